#pragma once

#include "Formats/ByteWindow.h"
#include "Formats/OggPage.h"

#include <vector>

namespace tamsy::media {

/// One page of an Ogg stream in a file.
struct OggPage {
    bool isFirst = false; ///< of its stream
    std::uint64_t granule = 0;
    std::uint32_t serial = 0;
    std::uint64_t body = 0;
    std::uint64_t end = 0;
    std::vector<std::uint8_t> laces; ///< lengths of the segments
};

/// The page at `offset`; nothing if there is none or it is incomplete.
[[nodiscard]] std::optional<OggPage> readOggPage(ByteWindow& window, std::uint64_t offset);

/// A packet as one source, though its pieces are spread over the pages of a stream.
class OggPacket : public ByteSource {
  public:
    explicit OggPacket(SharedSource file) : file_(std::move(file)) {}

    void append(std::uint64_t offset, std::uint64_t length);

    [[nodiscard]] std::uint64_t size() const override { return size_; }
    [[nodiscard]] std::size_t read(std::uint64_t offset,
                                   std::span<std::byte> target) const override;

  private:
    struct Piece {
        std::uint64_t start = 0; ///< in the packet
        std::uint64_t offset = 0;
        std::uint64_t length = 0;
    };

    SharedSource file_;
    std::uint64_t size_ = 0;
    std::vector<Piece> pieces_;
};

/// Steps through the packets of one stream, from its first page on.
class OggPacketWalk {
  public:
    OggPacketWalk(SharedSource file, ByteWindow& window, std::uint64_t offset,
                  std::uint32_t serial);

    /// The next packet; null at the end, or if it exceeds 64 MiB, which no tag does.
    [[nodiscard]] std::shared_ptr<const OggPacket> next();

    /// The page that the latest packet ended on.
    [[nodiscard]] const OggPage& page() const { return page_; }

    /// Whether no other packet starts on that page after it.
    [[nodiscard]] bool isAtPageEnd() const { return lace_ == page_.laces.size(); }

  private:
    [[nodiscard]] bool readNextPage();

    SharedSource file_;
    ByteWindow& window_;
    std::uint64_t position_;
    std::uint32_t serial_;
    OggPage page_;
    std::size_t lace_ = 0;
    std::uint64_t piece_ = 0;
};

} // namespace tamsy::media
