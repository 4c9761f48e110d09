#include "Playback/FFmpeg/RawAac.h"

#include "Formats/FrameHeader.h"

extern "C" {
#include <libavformat/avformat.h>
#include <libavutil/mathematics.h>
}

#include <algorithm>
#include <array>
#include <cstring>
#include <span>

namespace tamsy {
namespace {

/// Frames per index entry: an hour takes half a megabyte, a seek decodes a fifth of a second.
constexpr std::int64_t framesPerEntry = 8;

constexpr std::int64_t id3v1Size = 128;

/// Bytes per read of the walk, and per sample. A frame has at most 8 KB.
constexpr std::size_t stepBytes = 64UL * 1024;
constexpr std::size_t sampleBytes = 16UL * 1024;

/// Visits the headers of the complete frames of one kind at the start of `bytes`. Returns the size
/// of these frames in bytes.
template <typename Visit>
std::size_t visitFrames(std::span<const std::byte> bytes, std::uint32_t kind, Visit visit) {
    std::size_t passed = 0;
    while (const auto header = media::parseFrameHeader(bytes.subspan(passed))) {
        if (header->kind != kind || header->length > bytes.size() - passed)
            break;
        visit(*header);
        passed += header->length;
    }
    return passed;
}

} // namespace

RawAacWalk::RawAacWalk(const FileInput& file, AVStream& stream)
    : file_(file), stream_(stream), buffer_(stepBytes), size_(file.size()) {
    std::array<std::byte, media::frameHeaderSize> bytes{};
    const AVIndexEntry* const start = avformat_index_get_entry(&stream, 0);
    const auto first =
        start ? media::parseFrameHeader(file.readAt(start->pos, bytes)) : std::nullopt;
    if (!first) {
        state_ = State::Refused;
        return;
    }
    offset_ = start->pos;
    startTime_ = start->timestamp;
    kind_ = first->kind;
    sampleRate_ = first->sampleRate;
}

RawAacWalk::State RawAacWalk::advance() {
    if (state_ != State::Walking)
        return state_;
    const std::span<const std::byte> bytes = file_.readAt(offset_, buffer_);
    const std::size_t passed =
        visitFrames(bytes, kind_, [this](const media::FrameHeader& header) { enter(header); });
    if (endsHere())
        state_ = State::Done;
    else if (passed == 0)
        state_ = State::Refused;
    return state_;
}

void RawAacWalk::enter(const media::FrameHeader& header) {
    const AVRational sampleTime{1, static_cast<int>(sampleRate_)};
    const std::int64_t time = startTime_ + av_rescale_q(samples_, sampleTime, stream_.time_base);
    if (frames_++ % framesPerEntry == 0)
        av_add_index_entry(&stream_, offset_, time, 0, 0, AVINDEX_KEYFRAME);
    offset_ += header.length;
    samples_ += header.samples;
}

/// Whether the file ends here, or its ID3v1 tag starts.
bool RawAacWalk::endsHere() const {
    std::array<std::byte, 3> name{};
    return offset_ == size_ ||
           (offset_ + id3v1Size == size_ && file_.readAt(offset_, name).size() == name.size() &&
            std::memcmp(name.data(), "TAG", name.size()) == 0);
}

bool RawAacWalk::hasFramesAhead() {
    constexpr std::int64_t count = 5;
    const std::int64_t share = (size_ - offset_) / count;
    file_.expectRandomReads(true);
    bool isAll = true;
    for (std::int64_t i = 0; isAll && i < count; ++i)
        isAll = sampleAt(offset_ + i * share + share / 2);
    file_.expectRandomReads(false);
    return isAll;
}

bool RawAacWalk::sampleAt(std::int64_t offset) {
    constexpr int enoughFrames = 2;
    const auto bytes = file_.readAt(offset, std::span(buffer_).first(sampleBytes));
    for (std::size_t from = 0; from < bytes.size() / 2; ++from) {
        int frames = 0;
        std::int64_t samples = 0;
        const std::size_t passed = visitFrames(bytes.subspan(from), kind_, [&](const auto& header) {
            ++frames;
            samples += header.samples;
        });
        if (frames < enoughFrames)
            continue;
        sampledBytes_ += static_cast<std::int64_t>(passed);
        sampledSamples_ += samples;
        return true;
    }
    return false;
}

std::int64_t RawAacWalk::duration() const {
    const AVRational sampleTime{1, static_cast<int>(sampleRate_)};
    std::int64_t samples = samples_;
    if (state_ != State::Done && sampledBytes_ > 0)
        samples += av_rescale(size_ - offset_, sampledSamples_, sampledBytes_);
    return av_rescale_q(samples, sampleTime, stream_.time_base);
}

} // namespace tamsy
