#include "Tags/Id3v2.h"

#include "Formats/Id3v2Header.h"
#include "Formats/Unsynchronisation.h"
#include "Tags/Id3v2Frame.h"

#include <algorithm>

namespace tamsy::media {

namespace {

// Unsynchronisation of a whole tag can only be undone from its start, byte by byte. A scan doesn't
// read through a picture larger than this.
constexpr std::uint64_t longestScannedTag = std::uint64_t{4} * 1024 * 1024;
constexpr std::uint64_t longestUnsynchronisedTag = std::uint64_t{64} * 1024 * 1024;

/// The tag at `offset`, if one ends before `end` or reaches beyond it.
std::optional<Id3v2Header> readHeader(ByteWindow& window, std::uint64_t offset, std::uint64_t end) {
    if (offset > end || end - offset < Id3v2Header::size)
        return std::nullopt;
    return parseId3v2Header(window.read(offset, Id3v2Header::size), end - offset);
}

bool hasKnownFrames(const Id3v2Header& header) {
    return header.version >= 2 && header.version <= 4;
}

/// The frames of one tag, in a file or, without unsynchronisation, in memory.
class FrameWalk {
  public:
    FrameWalk(MediaParse& parse, const Id3v2Header& header, SharedSource source, ByteWindow& window)
        : parse_(parse), header_(header), source_(std::move(source)), window_(window) {}

    /// Reads the frames between two offsets. Returns the offset after the last one.
    std::uint64_t run(std::uint64_t position, std::uint64_t end) {
        if (header_.hasExtendedHeader)
            position = endOfExtendedHeader(position, end);
        for (int count = 0; count < maxEntries; ++count) {
            auto frame = readFrameAt(position, end);
            if (!frame && !isPadding(position, end))
                frame = findFrameAfter(position, end);
            if (!frame)
                break;
            readFrame(parse_.items, *frame, source_, window_);
            position = frame->offset + frame->size;
        }
        return position;
    }

  private:
    std::uint64_t endOfExtendedHeader(std::uint64_t position, std::uint64_t end) {
        ByteCursor cursor(window_.read(position, 4));
        const std::uint32_t raw = cursor.readU32().value_or(0);
        const std::uint64_t size =
            header_.version == 4 ? fromSyncsafe(raw) : std::uint64_t{raw} + 4;
        return size < end - position ? position + size : position;
    }

    std::optional<Id3Frame> readFrameAt(std::uint64_t position, std::uint64_t end) {
        const std::uint64_t headerSize = header_.version == 2 ? 6 : 10;
        if (end < headerSize || position > end - headerSize)
            return std::nullopt;
        const Bytes bytes = window_.read(position, headerSize);
        ByteCursor cursor(bytes);
        const auto name = cursor.readBytes(header_.version == 2 ? 3 : 4);
        const auto letters = name ? nameLetters(asText(*name)) : std::nullopt;
        if (!letters)
            return std::nullopt;
        Id3Frame frame;
        frame.name = fourLetterName(*letters);
        frame.offset = position + headerSize;
        frame.isVersion22 = letters->size() == 3;
        if (header_.version == 2) {
            frame.size = cursor.readU24().value_or(0);
        } else {
            const std::uint32_t size = cursor.readU32().value_or(0);
            setFlags(frame, cursor.readU16().value_or(0));
            frame.size = header_.version == 4 ? sizeOfV24(size, frame.offset, end) : size;
        }
        return frame.size <= end - frame.offset ? std::optional(frame) : std::nullopt;
    }

    /// The length of the name: four letters, or three in version 2.2 and, padded with a NUL, in
    /// later versions by some programs.
    static std::optional<std::string_view> nameLetters(std::string_view name) {
        if (name.size() == 4 && name.back() == '\0')
            name.remove_suffix(1);
        return isFrameName(name) ? std::optional(name) : std::nullopt;
    }

    bool isPadding(std::uint64_t position, std::uint64_t end) {
        const Bytes bytes = window_.readUpTo(
            position, position < end ? std::min<std::uint64_t>(4, end - position) : 0);
        return std::ranges::all_of(bytes, [](std::byte byte) { return byte == std::byte{0}; });
    }

    /// The next frame after damage: a text frame, or one followed by another frame, padding or the
    /// end.
    std::optional<Id3Frame> findFrameAfter(std::uint64_t position, std::uint64_t end) {
        constexpr std::uint64_t farthest = 4096;
        const std::uint64_t last = std::min(end, position + farthest);
        for (++position; position < last; ++position) {
            auto frame = readFrameAt(position, end);
            const bool isPlain = frame && frame->size > 0 && !frame->isCompressed &&
                                 !frame->isEncrypted && !frame->isGrouped;
            if (isPlain && (isText(*frame) || leadsOn(frame->offset + frame->size, end)))
                return frame;
        }
        return std::nullopt;
    }

    bool isText(const Id3Frame& frame) {
        constexpr std::byte lastEncoding{3};
        const Bytes encoding = window_.read(frame.offset, 1);
        return frame.name.front() == 'T' && !encoding.empty() && encoding.front() <= lastEncoding;
    }

    void setFlags(Id3Frame& frame, unsigned flags) const {
        if (header_.version == 3) {
            frame.isCompressed = (flags & 0x80U) != 0;
            frame.isEncrypted = (flags & 0x40U) != 0;
            frame.isGrouped = (flags & 0x20U) != 0;
            frame.hasLength = frame.isCompressed;
            return;
        }
        frame.isGrouped = (flags & 0x40U) != 0;
        frame.isCompressed = (flags & 0x08U) != 0;
        frame.isEncrypted = (flags & 0x04U) != 0;
        frame.isUnsynchronised = (flags & 0x02U) != 0 || header_.isUnsynchronised;
        frame.hasLength = (flags & 0x01U) != 0;
    }

    // Some programs write sizes in 2.4 that aren't sync-safe. The interpretation that leads to
    // another frame, to padding or to the end of the tag is the right one.
    std::uint64_t sizeOfV24(std::uint32_t raw, std::uint64_t body, std::uint64_t end) {
        if ((raw & 0x80808080U) != 0)
            return raw;
        const std::uint64_t syncsafe = fromSyncsafe(raw);
        if (syncsafe == raw || leadsOn(body + syncsafe, end) || !leadsOn(body + raw, end))
            return syncsafe;
        return raw;
    }

    bool leadsOn(std::uint64_t position, std::uint64_t end) {
        if (position >= end)
            return position == end;
        const Bytes next = window_.readUpTo(position, std::min<std::uint64_t>(4, end - position));
        return !next.empty() && (next.front() == std::byte{0} || nameLetters(asText(next)));
    }

    MediaParse& parse_;
    const Id3v2Header& header_;
    SharedSource source_;
    ByteWindow& window_;
};

std::uint64_t readTag(MediaParse& parse, const Id3v2Header& header, std::uint64_t offset,
                      std::uint64_t end) {
    const std::uint64_t body = offset + Id3v2Header::size;
    const std::uint64_t available = end - body;
    const std::uint64_t size = std::min<std::uint64_t>(header.bodySize, available);
    std::uint64_t lastFrame = body + size;
    if (!hasKnownFrames(header)) {
        // Skipped.
    } else if (header.isUnsynchronised && header.version < 4) {
        const std::uint64_t limit =
            parse.items.listsEverything() ? longestUnsynchronisedTag : longestScannedTag;
        const auto plain =
            std::make_shared<UnsynchronisedSource>(parse.source, body, std::min(size, limit));
        ByteWindow window(*plain);
        FrameWalk(parse, header, plain, window).run(0, plain->size());
    } else {
        lastFrame = FrameWalk(parse, header, parse.source, parse.window).run(body, body + size);
    }
    if (header.bodySize > available)
        return lastFrame;
    return std::min(offset + header.tagSize(), end);
}

} // namespace

std::uint64_t readId3v2Tags(MediaParse& parse, std::uint64_t offset, std::uint64_t end) {
    for (int tag = 0; tag < Id3v2Header::maxTags; ++tag) {
        const auto header = readHeader(parse.window, offset, end);
        if (!header)
            break;
        offset = readTag(parse, *header, offset, end);
    }
    return offset;
}

} // namespace tamsy::media
