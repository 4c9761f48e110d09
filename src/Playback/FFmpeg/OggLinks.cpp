#include "Playback/FFmpeg/OggLinks.h"

#include "Formats/OggPage.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string_view>

namespace tamsy {
namespace {

constexpr std::string_view capturePattern("OggS\0", 5);
constexpr std::size_t maxPageSize = 65'307; // bytes

class PageWalk {
  public:
    explicit PageWalk(const FileInput& input) : input_(input), bytes_(maxPageSize) {}

    [[nodiscard]] std::int64_t offset() const { return offset_; }

    /// Moves the offset to the page there, or to the next one, and returns it; nothing at the end.
    std::optional<OggPageHeader> find() {
        constexpr std::size_t headerSize = OggPageHeader::maxSize;
        if (const auto page = parseOggPageHeader(read(headerSize)))
            return page;
        while (true) {
            const auto bytes = read(bytes_.size());
            if (bytes.size() < capturePattern.size())
                return std::nullopt;
            const std::string_view text(reinterpret_cast<const char*>(bytes.data()), bytes.size());
            const std::size_t found = text.find(capturePattern, 1);
            const std::size_t passed = bytes.size() - (capturePattern.size() - 1);
            offset_ += static_cast<std::int64_t>(std::min(found, passed));
            if (found == std::string_view::npos)
                continue;
            if (const auto page = parseOggPageHeader(read(headerSize)))
                return page;
        }
    }

    void pass(const OggPageHeader& page) {
        offset_ += static_cast<std::int64_t>(page.size() + page.bodySize);
    }

    /// The last page in the file's last 64 KB that meets `isWanted`, which is called with the page
    /// and the number of bytes from its start to the end of the file. Moves the offset.
    template <typename Predicate>
    std::optional<OggPageHeader> findLast(Predicate isWanted) {
        offset_ = std::max<std::int64_t>(0, input_.size() - static_cast<std::int64_t>(maxPageSize));
        const auto bytes = read(bytes_.size());
        const std::string_view text(reinterpret_cast<const char*>(bytes.data()), bytes.size());
        for (std::size_t at = text.rfind(capturePattern); at != std::string_view::npos;
             at = text.rfind(capturePattern, at - 1)) {
            const auto page = parseOggPageHeader(bytes.subspan(at));
            if (page && isWanted(*page, bytes.size() - at))
                return page;
            if (at == 0)
                break;
        }
        return std::nullopt;
    }

    void restart() { offset_ = 0; }

  private:
    /// Returns nothing once too much has been read: a file of empty pages would take forever.
    std::span<const std::byte> read(std::size_t count) {
        constexpr std::size_t leastBytes = 1024;              // to read small pages together
        constexpr std::size_t maxBytes = 20'000 * leastBytes; // for about 80 MB of music
        const auto from = static_cast<std::size_t>(std::max<std::int64_t>(0, offset_ - start_));
        if (offset_ >= start_ && from + count <= filled_.size())
            return filled_.subspan(from, count);
        readBytes_ += std::max(count, leastBytes);
        if (readBytes_ > maxBytes)
            return {};
        start_ = offset_;
        filled_ = input_.readAt(offset_, std::span(bytes_).first(std::max(count, leastBytes)));
        return filled_.first(std::min(count, filled_.size()));
    }

    const FileInput& input_;
    std::vector<std::byte> bytes_;
    std::int64_t offset_ = 0;
    std::int64_t start_ = 0; // offset of `filled_`
    std::span<const std::byte> filled_;
    std::size_t readBytes_ = 0;
};

/// Whether the last page belongs to one of the streams that the file starts with.
bool isOneLink(PageWalk& walk) {
    constexpr std::size_t maxStreams = 64;
    std::vector<std::uint32_t> serialNumbers;
    while (const auto page = walk.find()) {
        if (!page->isFirst || serialNumbers.size() == maxStreams)
            break;
        serialNumbers.push_back(page->serial);
        walk.pass(*page);
    }
    const auto last = walk.findLast([](const auto&, std::size_t) { return true; });
    return !last || std::ranges::find(serialNumbers, last->serial) != serialNumbers.end();
}

} // namespace

std::vector<FileRange> findOggLinks(const FileInput& input) {
    constexpr std::size_t maxLinks = 256; // each has to be opened
    std::array<std::byte, OggPageHeader::maxSize> start{};
    if (!parseOggPageHeader(input.readAt(0, start)))
        return {};
    PageWalk walk(input);
    if (isOneLink(walk))
        return {FileRange()};
    walk.restart();
    std::vector<FileRange> links;
    bool isHead = false;
    while (const auto page = walk.find()) {
        if (page->isFirst && !isHead && links.size() < maxLinks) {
            if (!links.empty())
                links.back().end = walk.offset();
            links.push_back({.start = walk.offset()});
        }
        isHead = page->isFirst;
        walk.pass(*page);
    }
    return links;
}

std::int64_t firstOggPosition(const FileInput& input, std::int64_t packetLength) {
    constexpr int maxPages = 64; // headers may hold a picture
    PageWalk walk(input);
    std::int64_t packets = 0;
    for (int i = 0; i < maxPages; ++i) {
        const auto page = walk.find();
        if (!page)
            break;
        if (page->granule != 0) // header pages have position 0
            packets += std::ranges::count_if(page->laces, [](std::byte lace) {
                return lace != std::byte{OggPageHeader::fullLace};
            });
        if (page->granule != 0 && page->granule != OggPageHeader::noGranule)
            return std::max<std::int64_t>(0, static_cast<std::int64_t>(page->granule) -
                                                 packets * packetLength);
        walk.pass(*page);
    }
    return 0;
}

std::optional<std::int64_t> lastOggPosition(const FileInput& input) {
    PageWalk walk(input);
    const auto last = walk.findLast([](const OggPageHeader& page, std::size_t bytesThere) {
        return page.granule != OggPageHeader::noGranule &&
               page.size() + page.bodySize <= bytesThere;
    });
    return last ? std::optional(static_cast<std::int64_t>(last->granule)) : std::nullopt;
}

} // namespace tamsy
