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

// Large enough to keep the system's calls few, small enough to stay in the cache.
constexpr std::size_t pieceLength = std::size_t{256} * 1024;

/// A stretch of a source; `end` isn't part of it.
struct Stretch {
    std::uint64_t start = 0;
    std::uint64_t end = 0;
};

/// The place of the first `name` that lies wholly in `where`.
std::optional<std::uint64_t> find(const media::ByteSource& source, std::string_view name,
                                  Stretch where) {
    std::vector<char> piece(
        static_cast<std::size_t>(std::min<std::uint64_t>(pieceLength, where.end - where.start)));
    while (where.end - where.start >= name.size()) {
        const std::uint64_t wanted = std::min<std::uint64_t>(piece.size(), where.end - where.start);
        const std::size_t got = source.read(
            where.start,
            std::as_writable_bytes(std::span(piece.data(), static_cast<std::size_t>(wanted))));
        const std::size_t found = std::string_view(piece.data(), got).find(name);
        if (found != std::string_view::npos)
            return where.start + found;
        if (got < wanted || got < name.size())
            return std::nullopt;
        // The name may begin in the last bytes of this piece and end in the next.
        where.start += got - (name.size() - 1);
    }
    return std::nullopt;
}

/// The inside of the item whose name stands at `position`, by the size that stands before the name.
std::optional<Stretch> itemAt(const media::ByteSource& source, std::uint64_t position) {
    if (position < sizeLength)
        return std::nullopt;
    const std::uint64_t itemStart = position - sizeLength;
    const QByteArray sizeBytes = source.copy(itemStart, sizeLength);
    const auto size = ByteCursor(std::as_bytes(std::span(sizeBytes))).readU32();
    const Stretch inside{.start = position + itemName.size(), .end = itemStart + size.value_or(0)};
    const bool fits = inside.end <= source.size() && inside.start < inside.end;
    return fits ? std::optional(inside) : std::nullopt;
}

} // namespace

std::optional<Lyrics> readM4ALyrics(const media::ByteSource& source) {
    const auto position = find(source, itemName, {.start = 0, .end = source.size()});
    const auto item = position ? itemAt(source, *position) : std::nullopt;
    const auto value = item ? find(source, valueName, *item) : std::nullopt;
    if (!value || *value + valueHeaderLength >= item->end)
        return std::nullopt;
    const std::uint64_t start = *value + valueHeaderLength;
    const auto decoded = decodeUTF8(source.copy(start, item->end - start));
    return decoded ? parseAsStampsDecide(*decoded) : std::nullopt;
}

std::optional<Lyrics> readM4ALyrics(const FileURL& url) {
    const media::SharedSource source = media::openFileSource(url);
    return source ? readM4ALyrics(*source) : std::nullopt;
}

} // namespace tamsy
