#pragma once

#include "Formats/ByteWindow.h"

#include <vector>

namespace tamsy::media {

/// Finds the links of a chained Ogg file (RFC 3533, 4): files one after the other, each with its
/// own streams. By bisection, since a scan has no time to visit every page.
class OggLinkSearch {
  public:
    explicit OggLinkSearch(const ByteSource& source) : window_(source, windowBytes) {}

    /// The offset after the link that starts at `begin`: that of the next link, or the file's size.
    [[nodiscard]] std::uint64_t endOfLink(std::uint64_t begin);

  private:
    struct Page {
        std::uint64_t offset = 0;
        std::uint64_t end = 0;
        std::uint32_t serial = 0;
    };
    static constexpr std::size_t windowBytes = std::size_t{16} * 1024; // some pages

    [[nodiscard]] std::optional<Page> nextPage(std::uint64_t offset);

    ByteWindow window_;
    std::vector<std::uint32_t> serials_; // of the link's streams
};

} // namespace tamsy::media
