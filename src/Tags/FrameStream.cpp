#include "Tags/FrameStream.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace tamsy::media {

namespace {

constexpr std::size_t searchedBytes = std::size_t{64} * 1024;
constexpr std::size_t walkWindow = std::size_t{64} * 1024;
constexpr std::uint64_t walkedBytes = std::uint64_t{64} * 1024 * 1024;
constexpr std::uint64_t walkedFrames = 250'000;
constexpr std::uint64_t toleratedJunk = std::uint64_t{256} * 1024;
constexpr std::uint64_t smallestFrame = 24;
constexpr std::uint64_t longestTrailer = std::uint64_t{64} * 1024; // other tags after the sound
constexpr std::uint64_t countingSlack = 4096; // encoders differ in what they count

std::optional<FrameHeader> headerAt(ByteWindow& window, std::uint64_t offset) {
    return parseFrameHeader(window.read(offset, frameHeaderSize));
}

bool isConfirmedFrame(ByteWindow& window, std::uint64_t offset) {
    const auto header = headerAt(window, offset);
    if (!header || header->length > window.size() - offset)
        return false;
    const std::uint64_t next = offset + header->length;
    if (window.size() - next < frameHeaderSize || window.matches(next, "TAG"))
        return true;
    const auto second = headerAt(window, next);
    return second && second->kind == header->kind;
}

struct LengthHeader {
    std::uint64_t frames = 0;
    std::uint64_t bytes = 0; ///< of the stream; 0 if unknown
    std::uint64_t droppedSamples = 0;
};

std::optional<LengthHeader> parseXingHeader(ByteCursor cursor) {
    const auto name = cursor.readBytes(4);
    if (!name || (asText(*name) != "Xing" && asText(*name) != "Info"))
        return std::nullopt;
    const std::uint32_t flags = cursor.readU32().value_or(0);
    if ((flags & 1U) == 0)
        return std::nullopt;
    LengthHeader header;
    header.frames = cursor.readU32().value_or(0);
    header.bytes = (flags & 2U) != 0 ? cursor.readU32().value_or(0) : 0;
    const std::uint64_t toEncoder = ((flags & 4U) != 0 ? 100U : 0U) + ((flags & 8U) != 0 ? 4U : 0U);
    const auto encoder = cursor.skip(toEncoder) ? cursor.readBytes(4) : std::nullopt;
    if (encoder && (asText(*encoder) == "LAME" || asText(*encoder).starts_with("Lav")) &&
        cursor.skip(17)) {
        const std::uint32_t gaps = cursor.readU24().value_or(0);
        header.droppedSamples = (gaps >> 12U) + (gaps & 0xFFFU);
    }
    return header;
}

std::optional<LengthHeader> parseVbriHeader(ByteCursor cursor) {
    const auto name = cursor.readBytes(4);
    if (!name || asText(*name) != "VBRI" || !cursor.skip(6))
        return std::nullopt;
    LengthHeader header;
    header.bytes = cursor.readU32().value_or(0);
    header.frames = cursor.readU32().value_or(0);
    return header;
}

/// The duration by the length header in the first frame; nothing if there is none, or if it
/// doesn't match the file's size, because the file was cut or joined.
std::optional<double> headerDuration(ByteWindow& window, std::uint64_t first,
                                     const FrameHeader& frame) {
    const Bytes bytes = window.readUpTo(first, frame.length);
    const auto from = [bytes](std::size_t offset) {
        return ByteCursor(bytes.subspan(std::min(bytes.size(), offset)));
    };
    auto header = parseXingHeader(from(frame.infoStart));
    if (!header)
        header = parseVbriHeader(from(36));
    if (!header || header->frames == 0)
        return std::nullopt;
    const std::uint64_t available = window.size() - first;
    const bool isCut = header->bytes > available + countingSlack;
    const bool isJoined =
        header->bytes != 0 && available > header->bytes + available / 16 + longestTrailer;
    if (isCut || isJoined || header->frames > available / smallestFrame)
        return std::nullopt;
    const std::uint64_t samples = header->frames * frame.samples;
    return static_cast<double>(samples - std::min(samples, header->droppedSamples)) /
           frame.sampleRate;
}

/// The next offset at which a frame may start; nothing if there is none within `limit` bytes.
std::optional<std::uint64_t> nextSync(ByteWindow& window, std::uint64_t offset,
                                      std::uint64_t limit) {
    const std::uint64_t end = offset + std::min(limit, window.size() - offset);
    while (offset < end) {
        const Bytes bytes = window.readUpTo(offset, static_cast<std::size_t>(end - offset));
        const void* found = bytes.empty() ? nullptr : std::memchr(bytes.data(), 0xFF, bytes.size());
        if (found)
            return offset +
                   static_cast<std::uint64_t>(static_cast<const std::byte*>(found) - bytes.data());
        if (bytes.empty())
            break;
        offset += bytes.size();
    }
    return std::nullopt;
}

/// Counts a stream's samples by its frame headers.
class FrameWalk {
  public:
    FrameWalk(const ByteSource& source, std::uint64_t first, const FrameHeader& header)
        : window_(source, walkWindow), first_(first), position_(first), header_(header) {}

    double seconds() {
        while (!isLongEnough() && (countFrames() || skipJunk())) {
        }
        const auto all = static_cast<double>(window_.size() - first_);
        const double part = isLongEnough() ? static_cast<double>(position_ - first_) / all : 1;
        return static_cast<double>(samples_) / header_.sampleRate / part;
    }

  private:
    [[nodiscard]] bool isLongEnough() const {
        return position_ - first_ >= walkedBytes || frames_ >= walkedFrames;
    }

    /// Counts the frames that start in the window; false if there is none at the position.
    bool countFrames() {
        const std::uint64_t start = position_;
        const Bytes bytes = window_.readUpTo(start, walkWindow);
        while (!isLongEnough() && position_ - start + frameHeaderSize <= bytes.size()) {
            const auto frame =
                parseFrameHeader(bytes.subspan(position_ - start).first<frameHeaderSize>());
            if (!frame || frame->kind != header_.kind || frame->length > window_.size() - position_)
                break;
            position_ += frame->length;
            samples_ += frame->samples;
            ++frames_;
        }
        return position_ != start;
    }

    bool skipJunk() {
        if (position_ >= window_.size() || junk_ >= toleratedJunk)
            return false;
        const auto sync = nextSync(window_, position_ + 1, toleratedJunk - junk_);
        if (!sync)
            return false;
        junk_ += *sync - position_;
        position_ = *sync;
        return true;
    }

    ByteWindow window_;
    std::uint64_t first_;
    std::uint64_t position_;
    FrameHeader header_;
    std::uint64_t frames_ = 0;
    std::uint64_t samples_ = 0;
    std::uint64_t junk_ = 0;
};

} // namespace

std::optional<std::uint64_t> findFirstFrame(MediaParse& parse, std::uint64_t offset) {
    if (isConfirmedFrame(parse.window, offset))
        return offset;
    constexpr std::size_t longestFrame = 8192;
    ByteWindow window(*parse.source, searchedBytes + longestFrame);
    const std::uint64_t available = window.readUpTo(offset, searchedBytes + longestFrame).size();
    const std::uint64_t end = offset + std::min<std::uint64_t>(available, searchedBytes);
    auto candidate = nextSync(window, offset, end - offset);
    while (candidate && !isConfirmedFrame(window, *candidate))
        candidate = nextSync(window, *candidate + 1, end - *candidate - 1);
    return candidate;
}

double frameStreamDuration(MediaParse& parse, std::uint64_t first) {
    const auto header = headerAt(parse.window, first);
    if (!header)
        return 0;
    if (const auto seconds = headerDuration(parse.window, first, *header))
        return *seconds;
    return FrameWalk(*parse.source, first, *header).seconds();
}

} // namespace tamsy::media
