#include "Playback/Miniaudio/AudioDecoder.h"

#include "Playback/Miniaudio/AudioFile.h"
#include "Playback/Miniaudio/FallbackDecoder.h"
#include "Playback/Miniaudio/MiniaudioDecoders.h"
#include "Playback/Miniaudio/MpegAudioScan.h"
#include "Playback/Miniaudio/OggVorbis.h"
#include "Playback/Miniaudio/ReadBudget.h"
#include "Utils/FileURL.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>

namespace tamsy {
namespace {

// What one call may read of a file. A sound file needs a fraction of each; a search through the
// rest of a broken one stays short. Vorbis goes to the start by way of its headers.
constexpr std::int64_t openingBudget = 1'048'576;
constexpr std::int64_t readingBudget = 4'194'304;
constexpr std::int64_t seekingBudget = 16'777'216;

/// Decoded at a time, in frames.
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

/// The decoder that the extension names, then the others: a file under a wrong name plays.
std::array<ma_encoding_format, 5> encodingsToTry(const QByteArray& extension) {
    const ma_encoding_format named = extension == "mp3"    ? ma_encoding_format_mp3
                                     : extension == "flac" ? ma_encoding_format_flac
                                     : extension == "ogg" || extension == "oga"
                                         ? ma_encoding_format_vorbis
                                         : ma_encoding_format_wav;
    return {named, ma_encoding_format_wav, ma_encoding_format_flac, ma_encoding_format_mp3,
            ma_encoding_format_vorbis};
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

AudioDecoder::~AudioDecoder() {
    if (isOpen_)
        static_cast<void>(ma_decoder_uninit(&decoder_));
}

ma_result AudioDecoder::open(const FileURL& url) {
    const QByteArray path = url.path();
    file_ = std::make_unique<AudioFile>(path);
    const AudioFile& file = *file_;
    if (file.error() != 0)
        return resultOf(file.error());
    seekingBudget_ = seekingBudget;
    const auto encodings = encodingsToTry(url.pathExtension().toLower());
    for (auto encoding = encodings.begin(); encoding != encodings.end(); ++encoding) {
        if (std::find(encodings.begin(), encoding, *encoding) != encoding)
            continue;
        if (*encoding == ma_encoding_format_mp3) {
            // Almost anything holds something like a frame, so a container's own codec goes first.
            if (encoding != encodings.begin() && openByFallback(file, path) == MA_SUCCESS)
                return MA_SUCCESS;
            if (!startScan() || openAs(*encoding, path) != MA_SUCCESS)
                continue;
            takeScan();
            return MA_SUCCESS;
        }
        std::int64_t headers = 0;
        if (*encoding == ma_encoding_format_vorbis) {
            const auto bytes = vorbisHeaderBytes(file);
            if (!bytes)
                continue;
            headers = static_cast<std::int64_t>(*bytes);
        }
        const ReadBudget budget(openingBudget + headers);
        if (openAs(*encoding, path) != MA_SUCCESS)
            continue;
        seekingBudget_ += headers;
        if (seeksBadly(decoder_, *encoding))
            return replaceByFallback(*encoding, path);
        isFlac_ = *encoding == ma_encoding_format_flac;
        return MA_SUCCESS;
    }
    return openByFallback(file, path);
}

ma_result AudioDecoder::openByFallback(const AudioFile& file, const QByteArray& path) {
    return isKnownContainer(file) ? finishOpening(openFallback(path, decoder_)) : MA_NO_BACKEND;
}

/// Leaves the file to the fallback, if that knows it.
ma_result AudioDecoder::replaceByFallback(ma_encoding_format encoding, const QByteArray& path) {
    static_cast<void>(ma_decoder_uninit(&decoder_));
    if (finishOpening(openFallback(path, decoder_)) == MA_SUCCESS)
        return MA_SUCCESS;
    isFlac_ = encoding == ma_encoding_format_flac;
    return openAs(encoding, path);
}

/// Walks through an MPEG file, as far as that takes no time to speak of. Of a file that is slow to
/// read, samples have to do: the walk is finished later.
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

/// Hands what the scan has found by now to the decoder.
void AudioDecoder::takeScan() {
    const MpegAudioScan& scan = scanner_->scan();
    if (boundPoints_ != scan.points.size() || boundPoints_ == 0)
        bindMpegSeekTable(decoder_, scan);
    boundPoints_ = scan.points.size();
    scannedLength_ = untoldMpegLength(decoder_, scanner_->expectedPcmFrames());
}

bool AudioDecoder::isUnscanned(double seconds) const {
    if (!scanner_ || scanner_->state() != MpegAudioScanner::State::Walking)
        return false;
    const auto frames = static_cast<double>(scanner_->scan().pcmFrames);
    return frames <= seconds * static_cast<double>(decoder_.outputSampleRate);
}

bool AudioDecoder::scanMore() {
    if (!scanner_)
        return false;
    // A file that turns out to be no music after all plays as far as its music goes.
    const bool goesOn = scanner_->advance() == MpegAudioScanner::State::Walking;
    if (!goesOn) {
        takeScan();
        scanner_.reset();
        file_.reset();
    }
    return goesOn;
}

ma_result AudioDecoder::openAs(ma_encoding_format encoding, const QByteArray& path) {
    // In the file's own channels and rate; the conversion from them is ours.
    ma_decoder_config config = ma_decoder_config_init(format, 0, 0);
    // Named, so that no other decoder is tried: one of them takes anything for sound.
    config.encodingFormat = encoding;
    return finishOpening(ma_decoder_init_file(path.constData(), &config, &decoder_));
}

ma_result AudioDecoder::finishOpening(ma_result result) {
    isOpen_ = result == MA_SUCCESS;
    if (!isOpen_ || startConversion())
        return result;
    static_cast<void>(ma_decoder_uninit(&decoder_));
    isOpen_ = false;
    return MA_FORMAT_NOT_SUPPORTED;
}

bool AudioDecoder::startConversion() {
    mix_.emplace(speakersOf(decoder_));
    resampler_.emplace(decoder_.outputSampleRate);
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
    // One that can't be told leaves 0.
    static_cast<void>(ma_decoder_get_length_in_pcm_frames(&decoder_, &frames));
    return static_cast<double>(resampler_->outputFrames(frames)) / sampleRate;
}

ma_result AudioDecoder::seek(double seconds) {
    constexpr double largest = 1'099'511'627'776.0; // in frames: 265 days
    const auto target = static_cast<std::uint64_t>(std::min(seconds * sampleRate, largest));
    const bool wasLost = isLost_;
    if (scanner_)
        takeScan();
    const ma_result result = seekToFrame(target);
    if (result == MA_SUCCESS)
        nextFrame_ = target;
    // A decoder that fails stands anywhere.
    isLost_ = result != MA_SUCCESS && (wasLost || seekToFrame(nextFrame_) != MA_SUCCESS);
    return result;
}

ma_result AudioDecoder::seekToFrame(std::uint64_t frame) {
    const auto restart = resampler_->restartFor(frame);
    const ReadBudget budget(seekingBudget_);
    // A short read may have ended within a frame, which the decoder would take for whole.
    if (isFlac_ && isCut_)
        dropFlacFrame(decoder_);
    isCut_ = false;
    restartConversion(restart.skippedOutput);
    const ma_result result = ma_decoder_seek_to_pcm_frame(&decoder_, restart.inputFrame);
    if (isFlac_ && result != MA_SUCCESS)
        dropFlacFrame(decoder_);
    return result;
}

ma_uint64 AudioDecoder::read(void* output, ma_uint64 count) {
    if (isLost_)
        return 0;
    const ReadBudget budget(readingBudget);
    std::span rest(static_cast<StereoFrame*>(output), count);
    while (!rest.empty() && (!converted_.empty() || !hasEnded_)) {
        if (converted_.empty())
            convertMore();
        const std::size_t given = std::min(rest.size(), converted_.size());
        std::ranges::copy(converted_.first(given), rest.begin());
        converted_ = converted_.subspan(given);
        rest = rest.subspan(given);
    }
    isLost_ = ReadBudget::isSpent();
    nextFrame_ += count - rest.size();
    return count - rest.size();
}

/// Decodes a block. It may give nothing: the resampler holds frames back.
void AudioDecoder::convertMore() {
    ma_uint64 count = 0;
    // An error in the middle reads as the end.
    static_cast<void>(ma_decoder_read_pcm_frames(&decoder_, decoded_.data(), blockFrames, &count));
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
    ma_data_source* file = decoder_.pBackend; // the decoder's own count believes every seek
    if (ma_data_source_get_data_format(file, nullptr, nullptr, &rate, nullptr, 0) != MA_SUCCESS ||
        ma_data_source_get_cursor_in_pcm_frames(file, &frame) != MA_SUCCESS || rate == 0)
        return 0;
    return static_cast<double>(frame) / rate;
}

} // namespace tamsy
