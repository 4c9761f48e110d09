#include "Playback/Miniaudio/TrailingTags.h"

#include "Formats/ApeTag.h"
#include "Formats/ByteCursor.h"

#include <array>
#include <charconv>
#include <string_view>

namespace tamsy {
namespace {

/// Reads small pieces of a file at a distance before the offset `end`.
class Tail {
  public:
    Tail(const AudioFile& file, std::uint64_t end) : file_(file), end_(end) {}

    /// `count` bytes from `distance` before the end on; fewer if the file ends earlier. Valid until
    /// the next call.
    ByteCursor::Bytes at(std::uint64_t distance, std::size_t count) {
        if (distance > end_)
            return {};
        return file_.read(end_ - distance, std::span(bytes_).first(count));
    }

    bool has(std::uint64_t distance, std::string_view text) {
        const auto bytes = at(distance, text.size());
        return std::string_view(reinterpret_cast<const char*>(bytes.data()), bytes.size()) == text;
    }

  private:
    const AudioFile& file_;
    std::uint64_t end_;
    std::array<std::byte, ApeFooter::size> bytes_{};
};

/// The size of the tag that ends at `end`; 0 if none does.
std::uint64_t tagSizeBefore(const AudioFile& file, std::uint64_t end) {
    constexpr std::uint64_t id3v1Size = 128, lyricsEnd = 9, lyricsDigits = 6;
    Tail tail(file, end);
    if (tail.has(id3v1Size, "TAG"))
        return id3v1Size;
    if (const auto footer = parseApeFooter(tail.at(ApeFooter::size, ApeFooter::size))) {
        const std::uint64_t size = footer->itemBytes + ApeFooter::size;
        const bool hasHeader = tail.has(size + ApeFooter::size, "APETAGEX");
        return size + (hasHeader ? ApeFooter::size : 0);
    }
    if (tail.has(lyricsEnd, "LYRICS200")) {
        const auto digits = tail.at(lyricsEnd + lyricsDigits, lyricsDigits);
        const auto* const first = reinterpret_cast<const char*>(digits.data());
        std::uint64_t size = 0;
        if (digits.size() == lyricsDigits &&
            std::from_chars(first, first + lyricsDigits, size).ptr == first + lyricsDigits)
            return size + lyricsDigits + lyricsEnd;
    }
    return 0;
}

} // namespace

std::uint64_t startOfTrailingTags(const AudioFile& file) {
    constexpr int maxTags = 8;
    std::uint64_t end = file.size();
    for (int i = 0; i < maxTags; ++i) {
        const std::uint64_t size = tagSizeBefore(file, end);
        if (size == 0 || size > end)
            break;
        end -= size;
    }
    return end;
}

} // namespace tamsy
