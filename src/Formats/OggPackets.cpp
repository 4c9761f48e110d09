#include "Formats/OggPackets.h"

#include <algorithm>
#include <numeric>

namespace tamsy::media {

namespace {

constexpr std::uint64_t longestPacket = std::uint64_t{64} * 1024 * 1024;
constexpr std::uint8_t fullLace = 255; // the packet goes on in the next segment

} // namespace

std::optional<OggPage> readOggPage(ByteWindow& window, std::uint64_t offset) {
    ByteCursor cursor(window.read(offset, 27, longestOggHeader));
    const auto signature = cursor.readU32();
    if (signature != 0x4F676753 || cursor.readU8() != 0) // "OggS", version 0
        return std::nullopt;
    OggPage page;
    page.isFirst = (cursor.readU8().value_or(0) & 2U) != 0;
    page.granule = cursor.readU64le().value_or(0);
    page.serial = cursor.readU32le().value_or(0);
    const std::size_t segments = cursor.skip(8) ? cursor.readU8().value_or(0) : 0;
    const Bytes laces = window.read(offset + 27, segments, longestOggHeader);
    if (laces.size() != segments)
        return std::nullopt;
    page.laces.reserve(segments);
    for (const std::byte lace : laces)
        page.laces.push_back(std::to_integer<std::uint8_t>(lace));
    page.body = offset + 27 + segments;
    page.end = std::accumulate(page.laces.begin(), page.laces.end(), page.body);
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
            isComplete = page_.laces[lace_++] != fullLace;
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
