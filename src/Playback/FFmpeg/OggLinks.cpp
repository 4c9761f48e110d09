#include "Playback/FFmpeg/OggLinks.h"

#include "Formats/OggPage.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string_view>

namespace tamsy {
namespace {

class PageWalk {
  public:
    explicit PageWalk(const FileInput& input) : input_(input), bytes_(OggPageHeader::maxPageSize) {}

    [[nodiscard]] std::int64_t offset() const { return offset_; }

    /// Moves the offset to the page there, or to the next one, and returns it; nothing at the end.
    std::optional<OggPageHeader> find() {
        constexpr std::size_t headerSize = OggPageHeader::maxSize;
        if (const auto page = parseOggPageHeader(read(headerSize)))
            return page;
        while (true) {
            const auto bytes = read(bytes_.size());
            if (bytes.size() < OggPageHeader::signature.size())
                return std::nullopt;
            const std::string_view text(reinterpret_cast<const char*>(bytes.data()), bytes.size());
            const std::size_t found = text.find(OggPageHeader::signature, 1);
            const std::size_t passed = bytes.size() - (OggPageHeader::signature.size() - 1);
            offset_ += static_cast<std::int64_t>(std::min(found, passed));
            if (found == std::string_view::npos)
                continue;
            if (const auto page = parseOggPageHeader(read(headerSize)))
                return page;
        }
    }

    void pass(const OggPageHeader& page) { offset_ += static_cast<std::int64_t>(page.pageSize()); }

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

/// The last bytes of the file, which contain a page's start unless a page was cut off.
std::vector<std::byte> tailOf(const FileInput& input) {
    std::vector<std::byte> tail(OggPageHeader::maxPageSize);
    const auto start = std::max<std::int64_t>(0, input.size() - std::ssize(tail));
    tail.resize(input.readAt(start, tail).size());
    return tail;
}

/// Whether the last page belongs to one of the streams that the file starts with.
bool isOneLink(const FileInput& input) {
    constexpr std::size_t maxStreams = 64;
    std::vector<std::uint32_t> serials;
    PageWalk walk(input);
    while (const auto page = walk.find()) {
        if (!page->isFirst || serials.size() == maxStreams)
            break;
        serials.push_back(page->serial);
        walk.pass(*page);
    }
    const auto last = findLastOggPage(tailOf(input));
    return !last || std::ranges::find(serials, last->serial) != serials.end();
}

} // namespace

std::vector<FileRange> findOggLinks(const FileInput& input) {
    constexpr std::size_t maxLinks = 256; // each has to be opened
    std::array<std::byte, OggPageHeader::maxSize> start{};
    if (!parseOggPageHeader(input.readAt(0, start)))
        return {};
    if (isOneLink(input))
        return {FileRange()};
    PageWalk walk(input);
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
        if (page->granule != 0) { // header pages have position 0
            const bool endsCutPacket = packets == 0 && page->isContinued;
            packets += page->endedPackets() - (endsCutPacket ? 1 : 0);
        }
        if (page->granule != 0 && page->granule != OggPageHeader::noGranule) {
            const auto end =
                static_cast<std::int64_t>(std::min<std::uint64_t>(page->granule, INT64_MAX));
            return std::max<std::int64_t>(0, end - packets * packetLength);
        }
        walk.pass(*page);
    }
    return 0;
}

std::optional<std::int64_t> lastOggPosition(const FileInput& input) {
    const auto granule = findLastOggGranule(tailOf(input));
    return granule ? std::optional(static_cast<std::int64_t>(*granule)) : std::nullopt;
}

} // namespace tamsy
