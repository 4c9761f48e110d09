#include "Tags/OggLinks.h"

#include "Formats/OggPackets.h"

#include <algorithm>

namespace tamsy::media {
namespace {

constexpr std::size_t maxStreams = 32;

} // namespace

std::uint64_t OggLinkSearch::endOfLink(std::uint64_t begin) {
    serials_.clear();
    std::uint64_t offset = begin;
    while (serials_.size() < maxStreams) {
        const auto page = readOggPage(window_, offset);
        if (!page || !page->isFirst)
            break;
        serials_.push_back(page->serial);
        offset = page->end;
    }
    const auto isInLink = [this](const auto& page) {
        return std::ranges::find(serials_, page.serial) != serials_.end();
    };
    const std::uint64_t tail = std::min<std::uint64_t>(window_.size(), windowBytes);
    const auto last = findLastOggPage(window_.readUpTo(window_.size() - tail, windowBytes));
    if (last && isInLink(*last))
        return window_.size();
    // The link's pages start before `beyond`, and all before `offset` are its own.
    std::uint64_t beyond = window_.size();
    while (beyond - offset > windowBytes) {
        const std::uint64_t middle = offset + (beyond - offset) / 2;
        const auto page = nextPage(middle);
        if (page && page->offset < beyond && isInLink(*page))
            offset = std::min(page->end, beyond);
        else
            beyond = middle;
    }
    while (const auto page = nextPage(offset)) {
        if (!isInLink(*page))
            return page->offset;
        offset = page->end;
    }
    return window_.size();
}

/// The first page that starts at `offset` or later.
std::optional<OggLinkSearch::Page> OggLinkSearch::nextPage(std::uint64_t offset) {
    while (true) {
        const auto bytes = window_.readUpTo(offset, windowBytes);
        const std::size_t found = asText(bytes).find(OggPageHeader::signature);
        if (found == 0) {
            if (const auto page = parseOggPageHeader(bytes))
                return Page{offset, offset + page->pageSize(), page->serial};
            ++offset;
        } else if (found != std::string_view::npos) {
            offset += found;
        } else if (bytes.size() < OggPageHeader::signature.size()) {
            return std::nullopt;
        } else {
            offset += bytes.size() - (OggPageHeader::signature.size() - 1);
        }
    }
}

} // namespace tamsy::media
