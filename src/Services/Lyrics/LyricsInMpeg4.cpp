#include "Services/Lyrics/LyricsContainers.h"

#include "Formats/ByteCursor.h"
#include "Services/Lyrics/LyricsDecoding.h"
#include "Services/Lyrics/LyricsParsing.h"
#include "Utils/FileURL.h"

#include <algorithm>
#include <span>
#include <string_view>
#include <vector>

namespace tamsy {
namespace {

constexpr std::string_view itemName = "\xA9lyr";
constexpr std::string_view valueName = "data";
constexpr std::uint64_t sizeLength = 4;
// The name, the type indicator and the locale indicator.
constexpr std::uint64_t valueHeaderLength = 12;

// Large enough for few system calls, small enough for the processor's cache.
constexpr std::size_t pieceLength = std::size_t{256} * 1024;

/// A range of a source's bytes, without `end`.
struct ByteRange {
    std::uint64_t start = 0;
    std::uint64_t end = 0;
};

/// The offset of the first `name` that lies entirely within `range`.
std::optional<std::uint64_t> find(const media::ByteSource& source, std::string_view name,
                                  ByteRange range) {
    std::vector<char> piece(
        static_cast<std::size_t>(std::min<std::uint64_t>(pieceLength, range.end - range.start)));
    while (range.end - range.start >= name.size()) {
        const std::uint64_t wanted = std::min<std::uint64_t>(piece.size(), range.end - range.start);
        const std::size_t got = source.read(
            range.start,
            std::as_writable_bytes(std::span(piece.data(), static_cast<std::size_t>(wanted))));
        const std::size_t found = std::string_view(piece.data(), got).find(name);
        if (found != std::string_view::npos)
            return range.start + found;
        if (got < wanted || got < name.size())
            return std::nullopt;
        // The name may begin in the last bytes of this piece and end in the next.
        range.start += got - (name.size() - 1);
    }
    return std::nullopt;
}

/// The contents of the item whose name is at `offset`, which its size precedes.
std::optional<ByteRange> itemAt(const media::ByteSource& source, std::uint64_t offset) {
    if (offset < sizeLength)
        return std::nullopt;
    const std::uint64_t itemStart = offset - sizeLength;
    const QByteArray sizeBytes = source.copy(itemStart, sizeLength);
    const auto size = ByteCursor(std::as_bytes(std::span(sizeBytes))).readU32();
    const std::uint64_t atomEnd = itemStart + size.value_or(0);
    const ByteRange contents{.start = offset + itemName.size(), .end = atomEnd};
    const bool fits = atomEnd <= source.size() && contents.start < atomEnd;
    return fits ? std::optional(contents) : std::nullopt;
}

} // namespace

std::optional<Lyrics> readM4ALyrics(const media::ByteSource& source) {
    const auto offset = find(source, itemName, {.start = 0, .end = source.size()});
    const auto item = offset ? itemAt(source, *offset) : std::nullopt;
    const auto dataPos = item ? find(source, valueName, *item) : std::nullopt;
    if (!dataPos || *dataPos + valueHeaderLength >= item->end)
        return std::nullopt;
    const std::uint64_t start = *dataPos + valueHeaderLength;
    const auto decoded = decodeUTF8(source.copy(start, item->end - start));
    return decoded ? parseAsStampsDecide(*decoded) : std::nullopt;
}

std::optional<Lyrics> readM4ALyrics(const FileURL& url) {
    const media::SharedSource source = media::openFileSource(url);
    return source ? readM4ALyrics(*source) : std::nullopt;
}

} // namespace tamsy
