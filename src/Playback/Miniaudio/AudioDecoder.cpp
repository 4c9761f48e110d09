#include "Playback/Miniaudio/AudioDecoder.h"

#include "Playback/Miniaudio/AudioFile.h"
#include "Playback/Miniaudio/FallbackDecoder.h"
#include "Playback/Miniaudio/FlacTotal.h"
#include "Playback/Miniaudio/MiniaudioDecoders.h"
#include "Playback/Miniaudio/MpegAudioScan.h"
#include "Playback/Miniaudio/OggVorbis.h"
#include "Playback/Miniaudio/ReadBudget.h"
#include "Utils/FileURL.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <utility>

namespace tamsy {
namespace {

// How much one call may read, in bytes. An intact file needs a fraction of it; it bounds the search
// through a damaged one. Vorbis files get their headers' size on top, since a seek to the start
// reads those.
constexpr std::int64_t openingBudget = 1'048'576;
constexpr std::int64_t readingBudget = 4'194'304;
constexpr std::int64_t mpegReadingBudget = 33'554'432; // a tag between two songs may hold a picture
constexpr std::int64_t seekingBudget = 16'777'216;

/// The size of a decoded block, in frames.
constexpr std::size_t blockFrames = 1024;

ma_result resultOf(int systemError) {
    switch (systemError) {
    case ENOENT:
        return MA_DOES_NOT_EXIST;
    case EACCES:
        return MA_ACCESS_DENIED;
    case EISDIR:
        return MA_IS_DIRECTORY;
    default:
        return MA_INVALID_FILE;
    }
}

/// The extension's decoder first, then the others, so that a file with a wrong extension plays.
std::array<ma_encoding_format, 5> encodingsToTry(const QByteArray& extension) {
    const ma_encoding_format named = extension == "mp3"    ? ma_encoding_format_mp3
                                     : extension == "flac" ? ma_encoding_format_flac
                                     : extension == "ogg" || extension == "oga"
                                         ? ma_encoding_format_vorbis
                                         : ma_encoding_format_wav;
    return {named, ma_encoding_format_wav, ma_encoding_format_flac, ma_encoding_format_mp3,
            ma_encoding_format_vorbis};
}

ma_decoder_config configFor(ma_encoding_format encoding) {
    // In the file's channels and sample rate; we convert them.
    ma_decoder_config config = ma_decoder_config_init(AudioDecoder::format, 0, 0);
    // Naming the decoder keeps miniaudio from trying others, one of which accepts anything.
    config.encodingFormat = encoding;
    return config;
}

std::vector<Speaker> speakersOf(const ma_decoder& decoder) {
    std::array<ma_channel, MA_MAX_CHANNELS> map{};
    // Without a map all speakers are unknown.
    static_cast<void>(ma_data_source_get_data_format(decoder.pBackend, nullptr, nullptr, nullptr,
                                                     map.data(), map.size()));
    std::vector<Speaker> speakers;
    for (const ma_channel channel : std::span(map).first(decoder.outputChannels))
        speakers.push_back(speakerAt(channel - MA_CHANNEL_FRONT_LEFT));
    return speakers;
}

} // namespace

void AudioDecoder::Closer::operator()(ma_decoder* decoder) const {
    static_cast<void>(ma_decoder_uninit(decoder));
    delete decoder; // NOLINT(cppcoreguidelines-owning-memory)
}

ma_result AudioDecoder::open(const FileURL& url) {
    path_ = url.path();
    file_ = std::make_unique<AudioFile>(path_);
    if (file_->error() != 0)
        return resultOf(file_->error());
    seekingBudget_ = seekingBudget;
    const bool isKnown = isKnownContainer(*file_);
    bool isUntried = isKnown; // the fallback decoder may support the file
    const auto encodings =
        encodingsToTry(holdsMpegAudio(*file_) ? QByteArray("mp3") : url.pathExtension().toLower());
    for (auto encoding = encodings.begin(); encoding != encodings.end(); ++encoding) {
        if (std::find(encodings.begin(), encoding, *encoding) != encoding)
            continue;
        // Almost any data contains something like an MPEG frame, so the fallback gets known
        // containers first.
        if (*encoding == ma_encoding_format_mp3 && encoding != encodings.begin() &&
            std::exchange(isUntried, false) && openByFallback() == MA_SUCCESS)
            return MA_SUCCESS;
        const ma_result result = *encoding == ma_encoding_format_mp3      ? openMpeg()
                                 : *encoding == ma_encoding_format_vorbis ? openVorbis()
                                                                          : openAs(*encoding);
        if (result != MA_SUCCESS)
            continue;
        mayFallBack_ = isKnown && kind_ != Kind::Mpeg && kind_ != Kind::Fallback;
        if (seeksBadly(*decoder_, *encoding))
            static_cast<void>(fallBack(0));
        return MA_SUCCESS;
    }
    return isUntried ? openByFallback() : MA_NO_BACKEND;
}

ma_result AudioDecoder::openMpeg() {
    if (!startScan())
        return MA_NO_BACKEND;
    const MpegAudioScan& scan = scanner_->scan();
    window_ = std::make_unique<FileWindow>(*file_, scan.start, scan.end);
    const ma_decoder_config config = configFor(ma_encoding_format_mp3);
    const ma_result result = openWith([&](ma_decoder& decoder) {
        return ma_decoder_init_vfs(window_->fileSystem(), path_.constData(), &config, &decoder);
    });
    if (result == MA_SUCCESS) {
        kind_ = Kind::Mpeg;
        takeScan();
    } else {
        scanner_.reset();
    }
    return result;
}

ma_result AudioDecoder::openVorbis() {
    const auto start = readVorbisStart(*file_);
    if (!start)
        return MA_NO_BACKEND;
    if (!isWholeVorbisStream(*file_, *start) && openByFallback() == MA_SUCCESS)
        return MA_SUCCESS;
    seekingBudget_ = seekingBudget + static_cast<std::int64_t>(start->headerBytes);
    return openAs(ma_encoding_format_vorbis, static_cast<std::int64_t>(start->headerBytes));
}

ma_result AudioDecoder::openAs(ma_encoding_format encoding, std::int64_t headerBytes) {
    const ReadBudget budget(openingBudget + headerBytes);
    const ma_decoder_config config = configFor(encoding);
    const ma_result result = openWith([&](ma_decoder& decoder) {
        return ma_decoder_init_file(path_.constData(), &config, &decoder);
    });
    const bool isFlac = result == MA_SUCCESS && encoding == ma_encoding_format_flac;
    kind_ = isFlac ? Kind::Flac : Kind::Other;
    isFlacUnchecked_ = isFlac;
    return result;
}

ma_result AudioDecoder::openByFallback() {
    const ma_result result =
        openWith([this](ma_decoder& decoder) { return openFallback(path_, decoder); });
    if (result == MA_SUCCESS)
        kind_ = Kind::Fallback;
    return result;
}

/// Replaces the decoder by one that `initialise` opens. After a failure the old one stays.
template <typename Initialise>
ma_result AudioDecoder::openWith(Initialise initialise) {
    auto decoder = std::make_unique<ma_decoder>();
    if (const ma_result result = initialise(*decoder); result != MA_SUCCESS)
        return result;
    Decoder previous = std::exchange(decoder_, Decoder(decoder.release()));
    if (startConversion())
        return MA_SUCCESS;
    decoder_ = std::move(previous);
    return MA_FORMAT_NOT_SUPPORTED;
}

/// Continues at `frame` with the fallback decoder, if that supports the file and has frames there.
/// Otherwise returns false and restores the previous decoder, as far as it can seek back.
bool AudioDecoder::fallBack(std::uint64_t frame) {
    if (!std::exchange(mayFallBack_, false))
        return false;
    Decoder previous = std::exchange(decoder_, nullptr);
    const Kind kind = kind_;
    const bool hadEnded = hasEnded_;
    if (openByFallback() == MA_SUCCESS && seekToFrame(frame) == MA_SUCCESS) {
        convertMore();
        if (!converted_.empty() || !hasEnded_) {
            isFlacUnchecked_ = false;
            return true;
        }
    }
    decoder_ = std::move(previous);
    kind_ = kind;
    static_cast<void>(startConversion());
    if (!hadEnded)
        static_cast<void>(seekToFrame(frame));
    hasEnded_ = hadEnded;
    return false;
}

/// Whether the duration reaches past `frame`, where the decoder found the end.
bool AudioDecoder::endsEarly(std::uint64_t frame) {
    constexpr double tolerance = 0.1; // in seconds
    return length() > static_cast<double>(frame) / sampleRate + tolerance;
}

/// Continues after `frame`, where the decoder found the end, if the file has more.
void AudioDecoder::resume(std::uint64_t frame) {
    if (scanner_) { // the header may describe only the first of several songs
        while (scanMore()) {
        }
        if (endsEarly(frame))
            static_cast<void>(seekToFrame(frame));
    } else if (mayFallBack_ && ((isFlacUnchecked_ && !checkFlac()) || endsEarly(frame))) {
        static_cast<void>(fallBack(frame));
    }
}

/// Corrects the header's length by the file's last frame; false if the decoder can't handle the
/// file.
bool AudioDecoder::checkFlac() {
    isFlacUnchecked_ = false;
    const FlacHeader header = flacHeader(*decoder_);
    const auto end = findFlacEnd(*file_, header.blockSize, header.maxFrameBytes);
    const bool isOneFormat =
        end && end->lastFrame.channels == header.channels &&
        (end->lastFrame.sampleRate == 0 || end->lastFrame.sampleRate == header.sampleRate);
    if (isOneFormat)
        correctFlacSamples(*decoder_, end->samples);
    // The decoder ignores changes of format within a file, and needs a length to seek.
    return isOneFormat || (!end && header.samples > 0);
}

/// Scans an MPEG file for a limited time. For a file that is slow to read, samples are checked, and
/// the scan is finished later.
bool AudioDecoder::startScan() {
    using State = MpegAudioScanner::State;
    constexpr auto patience = std::chrono::milliseconds(20);
    const auto deadline = std::chrono::steady_clock::now() + patience;
    scanner_ = std::make_unique<MpegAudioScanner>(*file_);
    while (scanner_->advance() == State::Walking && std::chrono::steady_clock::now() < deadline) {
    }
    if (scanner_->state() == State::Walking && !scanner_->hasMusicAhead()) {
        while (scanner_->advance() == State::Walking) {
        }
    }
    if (scanner_->state() == State::Refused)
        scanner_.reset();
    return scanner_ != nullptr;
}

/// Gives the decoder what the scan has found so far.
void AudioDecoder::takeScan() {
    const MpegAudioScan& scan = scanner_->scan();
    if (boundPoints_ != scan.points.size() || boundPoints_ == 0)
        bindMpegSeekTable(*decoder_, scan);
    boundPoints_ = scan.points.size();
    if (scanner_->state() == MpegAudioScanner::State::Done)
        correctMpegLength(*decoder_, scan);
    scannedLength_ = untoldMpegLength(*decoder_, scanner_->expectedPcmFrames());
}

bool AudioDecoder::isUnscanned(double seconds) const {
    if (isFlacUnchecked_)
        return true;
    if (!scanner_ || scanner_->state() != MpegAudioScanner::State::Walking)
        return false;
    const auto frames = static_cast<double>(scanner_->scan().pcmFrames);
    return frames <= seconds * static_cast<double>(decoder_->outputSampleRate);
}

bool AudioDecoder::scanMore() {
    if (isFlacUnchecked_ && !checkFlac())
        static_cast<void>(fallBack(nextFrame_));
    if (!scanner_)
        return false;
    // A file that turns out not to be music plays up to there.
    const bool goesOn = scanner_->advance() == MpegAudioScanner::State::Walking;
    if (!goesOn) {
        takeScan();
        scanner_.reset();
    }
    return goesOn;
}

bool AudioDecoder::startConversion() {
    mix_.emplace(speakersOf(*decoder_));
    resampler_.emplace(decoder_->outputSampleRate);
    decoded_.resize(blockFrames * mix_->channels());
    return resampler_->isUsable();
}

void AudioDecoder::restartConversion(std::uint64_t skippedFrames) {
    resampler_->restart();
    converted_ = {};
    skippedFrames_ = skippedFrames;
    hasEnded_ = false;
}

double AudioDecoder::length() {
    if (scannedLength_)
        return *scannedLength_;
    ma_uint64 frames = 0;
    // Stays 0 if unknown.
    static_cast<void>(ma_decoder_get_length_in_pcm_frames(decoder_.get(), &frames));
    return static_cast<double>(resampler_->outputFrames(frames)) / sampleRate;
}

ma_result AudioDecoder::seek(double seconds) {
    constexpr double largest = 1'099'511'627'776.0; // in frames: 265 days
    const auto target = static_cast<std::uint64_t>(std::min(seconds * sampleRate, largest));
    const bool wasLost = isLost_;
    if (isFlacUnchecked_ && !checkFlac())
        static_cast<void>(fallBack(nextFrame_));
    if (scanner_)
        takeScan();
    ma_result result = seekToFrame(target);
    if (result != MA_SUCCESS && !wasCutShort_ && endsEarly(target) && fallBack(target))
        result = MA_SUCCESS;
    if (result == MA_SUCCESS)
        nextFrame_ = target;
    // After a failure the decoder's position is undefined.
    isLost_ = result != MA_SUCCESS && (wasLost || seekToFrame(nextFrame_) != MA_SUCCESS);
    return result;
}

ma_result AudioDecoder::seekToFrame(std::uint64_t frame) {
    const auto restart = resampler_->restartFor(frame);
    const ReadBudget budget(seekingBudget_);
    // A short read may have ended within a frame, which the decoder would count as complete.
    if (kind_ == Kind::Flac && isCut_)
        dropFlacFrame(*decoder_);
    isCut_ = false;
    restartConversion(restart.skippedOutput);
    const ma_result result = ma_decoder_seek_to_pcm_frame(decoder_.get(), restart.inputFrame);
    wasCutShort_ = ReadBudget::isSpent();
    if (kind_ == Kind::Flac && result != MA_SUCCESS)
        dropFlacFrame(*decoder_);
    if (kind_ == Kind::Mpeg && result == MA_SUCCESS)
        noteMpegPosition(*decoder_, restart.inputFrame);
    return result;
}

ma_uint64 AudioDecoder::read(void* output, ma_uint64 count) {
    if (isLost_)
        return 0;
    const ReadBudget budget(kind_ == Kind::Mpeg ? mpegReadingBudget : readingBudget);
    std::span rest(static_cast<StereoFrame*>(output), count);
    while (!rest.empty() && (!converted_.empty() || !hasEnded_)) {
        if (converted_.empty())
            convertMore();
        const std::size_t given = std::min(rest.size(), converted_.size());
        std::ranges::copy(converted_.first(given), rest.begin());
        converted_ = converted_.subspan(given);
        rest = rest.subspan(given);
        isLost_ = isLost_ || ReadBudget::isSpent();
        if (hasEnded_ && converted_.empty() && !isLost_)
            resume(nextFrame_ + count - rest.size());
    }
    nextFrame_ += count - rest.size();
    return count - rest.size();
}

/// Decodes a block. It may return nothing, since the resampler buffers frames.
void AudioDecoder::convertMore() {
    ma_uint64 count = 0;
    // An error counts as the end.
    static_cast<void>(
        ma_decoder_read_pcm_frames(decoder_.get(), decoded_.data(), blockFrames, &count));
    hasEnded_ = count == 0;
    isCut_ = count < blockFrames;
    const std::size_t samples = std::min<std::size_t>(count, blockFrames) * mix_->channels();
    const std::span<const float> decoded = std::span(decoded_).first(samples);
    converted_ = hasEnded_ ? resampler_->drain() : resampler_->process(mix_->mix(decoded));
    const auto skipped = std::min<std::uint64_t>(skippedFrames_, converted_.size());
    skippedFrames_ -= skipped;
    converted_ = converted_.subspan(skipped);
}

double AudioDecoder::place() {
    ma_uint64 frame = 0;
    ma_uint32 rate = 0;
    ma_data_source* file = decoder_->pBackend; // the decoder's own count trusts every seek
    if (ma_data_source_get_data_format(file, nullptr, nullptr, &rate, nullptr, 0) != MA_SUCCESS ||
        ma_data_source_get_cursor_in_pcm_frames(file, &frame) != MA_SUCCESS || rate == 0)
        return 0;
    if (kind_ == Kind::Mpeg)
        frame -= std::min<ma_uint64>(frame, mpegDelay(*decoder_));
    return static_cast<double>(frame) / rate;
}

} // namespace tamsy
