#include "Playback/Miniaudio/AudioDecoder.h"

#include "Formats/FlacEnd.h"
#include "Playback/Miniaudio/AudioFile.h"
#include "Playback/Miniaudio/MiniaudioDecoders.h"
#include "Playback/Miniaudio/MpegAudioScan.h"
#include "Playback/Miniaudio/ReadBudget.h"
#include "Playback/Miniaudio/TrailingTags.h"

#include <algorithm>
#include <array>

namespace tamsy {
namespace {

// How much one call may read, in bytes. An intact file needs a fraction of it; it bounds the search
// through a damaged one.
constexpr std::int64_t readingBudget = 4'194'304;
constexpr std::int64_t mpegReadingBudget = 33'554'432; // a tag between two songs may hold a picture

/// The size of a decoded block, in frames.
constexpr std::size_t blockFrames = 1024;

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

std::optional<FlacEnd> flacEndOf(const AudioFile& file, const FlacHeader& header) {
    const std::uint64_t end = startOfTrailingTags(file);
    const auto size = std::min<std::uint64_t>(end, flacTailBytes(header.maxFrameBytes));
    std::vector<std::byte> buffer(static_cast<std::size_t>(size));
    return findFlacEnd(file.read(end - size, buffer), header.blockSize);
}

} // namespace

void AudioDecoder::Closer::operator()(ma_decoder* decoder) const {
    static_cast<void>(ma_decoder_uninit(decoder));
    delete decoder; // NOLINT(cppcoreguidelines-owning-memory)
}

/// Whether the duration reaches past `frame`, where the decoder found the end.
bool AudioDecoder::endsEarly(std::uint64_t frame) {
    constexpr double tolerance = 0.1; // in seconds
    return length() > static_cast<double>(frame) / sampleRate + tolerance;
}

/// Continues after `frame`, where the decoder found the end, if the file has more.
void AudioDecoder::resume(std::uint64_t frame) {
    if (scanner_) { // the header may describe only the first of several songs
        while (!isAbandoned_ && scanMore()) {
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
    const auto end = flacEndOf(*file_, header);
    const bool isOneFormat =
        end && end->lastFrame.channels == header.channels &&
        (end->lastFrame.sampleRate == 0 || end->lastFrame.sampleRate == header.sampleRate);
    if (isOneFormat)
        correctFlacSamples(*decoder_, end->samples);
    // The decoder ignores changes of format within a file, and needs a length to seek.
    return isOneFormat || (!end && header.samples > 0);
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
