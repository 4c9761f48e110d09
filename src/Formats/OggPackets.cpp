#include "Formats/OggPackets.h"

#include <algorithm>

namespace tamsy::media {

namespace {

constexpr std::uint64_t longestPacket = std::uint64_t{64} * 1024 * 1024;

} // namespace

std::optional<OggPage> readOggPage(ByteWindow& window, std::uint64_t offset) {
    // Between pages nothing else needs to be read.
    constexpr std::size_t readAhead = OggPageHeader::maxSize;
    const Bytes start = window.read(offset, OggPageHeader::minSize, readAhead);
    const std::size_t laces = start.empty() ? 0 : std::to_integer<std::size_t>(start.back());
    const auto header =
        parseOggPageHeader(window.read(offset, OggPageHeader::minSize + laces, readAhead));
    if (!header)
        return std::nullopt;
    OggPage page;
    page.isFirst = header->isFirst;
    page.granule = header->granule;
    page.serial = header->serial;
    page.body = offset + header->size();
    page.end = page.body + header->bodySize;
    page.laces.reserve(laces);
    for (const std::byte lace : header->laces)
        page.laces.push_back(std::to_integer<std::uint8_t>(lace));
    return page.end <= window.size() ? std::optional(std::move(page)) : std::nullopt;
}

void OggPacket::append(std::uint64_t offset, std::uint64_t length) {
    pieces_.push_back({.start = size_, .offset = offset, .length = length});
    size_ += length;
}

std::size_t OggPacket::read(std::uint64_t offset, std::span<std::byte> target) const {
    auto piece = std::ranges::upper_bound(pieces_, offset, {}, &Piece::start);
    if (piece == pieces_.begin())
        return 0;
    std::size_t done = 0;
    for (--piece; piece != pieces_.end() && done < target.size(); ++piece) {
        const std::uint64_t skipped = offset + done - piece->start;
        if (skipped >= piece->length)
            continue;
        const auto wanted = static_cast<std::size_t>(
            std::min<std::uint64_t>(piece->length - skipped, target.size() - done));
        const std::size_t got = file_->read(piece->offset + skipped, target.subspan(done, wanted));
        done += got;
        if (got != wanted)
            break;
    }
    return done;
}

OggPacketWalk::OggPacketWalk(SharedSource file, ByteWindow& window, std::uint64_t offset,
                             std::uint32_t serial)
    : file_(std::move(file)), window_(window), position_(offset), serial_(serial) {}

std::shared_ptr<const OggPacket> OggPacketWalk::next() {
    auto packet = std::make_shared<OggPacket>(file_);
    while (packet->size() <= longestPacket) {
        if (lace_ == page_.laces.size() && !readNextPage())
            return nullptr;
        const std::uint64_t start = piece_;
        bool isComplete = false;
        while (lace_ < page_.laces.size() && !isComplete) {
            piece_ += page_.laces[lace_];
            isComplete = page_.laces[lace_++] != OggPageHeader::fullLace;
        }
        packet->append(start, piece_ - start);
        if (isComplete)
            return packet;
    }
    return nullptr;
}

bool OggPacketWalk::readNextPage() {
    do {
        auto page = readOggPage(window_, position_);
        if (!page)
            return false;
        page_ = std::move(*page);
        position_ = page_.end;
    } while (page_.serial != serial_ || page_.laces.empty());
    lace_ = 0;
    piece_ = page_.body;
    return true;
}

} // namespace tamsy::media
