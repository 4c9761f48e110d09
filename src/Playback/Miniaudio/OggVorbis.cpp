#include "Playback/Miniaudio/OggVorbis.h"

#include "Formats/ByteCursor.h"
#include "Formats/OggPage.h"
#include "Formats/VorbisCommentWalk.h"
#include "Playback/Miniaudio/VorbisCodebooks.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <vector>

namespace tamsy {
namespace {

using Bytes = ByteCursor::Bytes;
using Packet = std::vector<std::byte>;

constexpr std::size_t largestPacket = 67'108'864; // bytes; comments hold covers as Base64

/// Reads packets from the pages at the start of a file.
class PacketReader {
  public:
    explicit PacketReader(const AudioFile& file) : file_(file) {}

    /// The offset in the file.
    [[nodiscard]] std::uint64_t position() const { return position_; }

    /// The next packet; nothing if it is incomplete.
    std::optional<Packet> next() {
        Packet packet;
        for (bool isWhole = false; !isWhole;) {
            if (segments_.empty() && !readPageHeader(!packet.empty()))
                return std::nullopt;
            std::size_t length = 0;
            for (; !segments_.empty() && !isWhole; segments_ = segments_.subspan(1)) {
                const auto size = std::to_integer<std::size_t>(segments_.front());
                length += size;
                isWhole = size < OggPageHeader::fullLace;
            }
            const std::size_t start = packet.size();
            if (start + length > largestPacket)
                return std::nullopt;
            packet.resize(start + length);
            if (file_.read(position_, std::span(packet).subspan(start)).size() != length)
                return std::nullopt;
            position_ += length;
        }
        return packet;
    }

    /// The serial number of the last packet's stream.
    [[nodiscard]] std::uint32_t serialNumber() const { return serialNumber_; }

  private:
    bool readPageHeader(bool continuesPacket) {
        const auto header = parseOggPageHeader(file_.read(position_, header_));
        if (!header || header->laces.empty() || header->isContinued != continuesPacket)
            return false;
        segments_ = header->laces;
        serialNumber_ = header->serial;
        position_ += header->size();
        return true;
    }

    const AudioFile& file_;
    std::uint64_t position_ = 0;
    std::uint32_t serialNumber_ = 0;
    std::array<std::byte, OggPageHeader::maxSize> header_{};
    Bytes segments_; // the page's segment table, from the next packet on
};

/// A header packet's contents after its type and name.
std::optional<Bytes> bodyOf(const std::optional<Packet>& packet, std::string_view start) {
    if (!packet || packet->size() < start.size())
        return std::nullopt;
    const std::string_view text(reinterpret_cast<const char*>(packet->data()), packet->size());
    return text.starts_with(start) ? std::optional(Bytes(*packet).subspan(start.size()))
                                   : std::nullopt;
}

bool commentsFit(Bytes body) {
    auto walk = walkVorbisComments(body);
    if (walk.count() > body.size() / sizeof(std::uint32_t))
        return false;
    while (walk.next()) {
    }
    constexpr std::byte framingBit{1};
    return walk.isComplete() && walk.position() < body.size() &&
           (body[walk.position()] & framingBit) != std::byte{0};
}

/// Whether the first audio page's position is past what its packets can decode to.
bool isCutAtStart(const AudioFile& file, const VorbisStart& start) {
    constexpr int maxPages = 4; // a packet may span several
    std::uint64_t position = start.headerBytes, packets = 0;
    for (int i = 0; i < maxPages; ++i) {
        std::array<std::byte, OggPageHeader::maxSize> bytes{};
        const auto page = parseOggPageHeader(file.read(position, bytes));
        if (!page)
            return false;
        packets += static_cast<std::uint64_t>(page->endedPackets());
        if (page->granule != OggPageHeader::noGranule)
            return page->granule > (packets + 1) * start.longBlock / 2;
        position += page->pageSize();
    }
    return false;
}

/// Whether the last page belongs to another stream.
bool isFollowed(const AudioFile& file, const VorbisStart& start) {
    const auto size = std::min<std::uint64_t>(file.size(), OggPageHeader::maxPageSize);
    std::vector<std::byte> buffer(static_cast<std::size_t>(size));
    const auto last = findLastOggPage(file.read(file.size() - size, buffer));
    return last && last->serial != start.serialNumber;
}

} // namespace

std::optional<VorbisStart> readVorbisStart(const AudioFile& file) {
    PacketReader reader(file);
    const auto identification = reader.next();
    const auto description = bodyOf(identification, "\1vorbis");
    if (!description)
        return std::nullopt;
    const auto commentPacket = reader.next();
    const auto comments = bodyOf(commentPacket, "\3vorbis");
    if (!comments || !commentsFit(*comments))
        return std::nullopt;
    const auto setupPacket = reader.next();
    const auto setup = bodyOf(setupPacket, "\5vorbis");
    if (!setup || !setupFits(*setup))
        return std::nullopt;
    ByteCursor cursor(*description);
    const auto blockSizes = cursor.skip(21) ? cursor.readU8() : std::nullopt;
    if (!blockSizes)
        return std::nullopt;
    return VorbisStart{.headerBytes = reader.position(),
                       .serialNumber = reader.serialNumber(),
                       .longBlock = 1U << (*blockSizes >> 4U)};
}

bool isWholeVorbisStream(const AudioFile& file, const VorbisStart& start) {
    return !isFollowed(file, start) && !isCutAtStart(file, start);
}

} // namespace tamsy
