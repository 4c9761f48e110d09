#include "Playback/Miniaudio/OggVorbis.h"

#include "Formats/ByteCursor.h"
#include "Formats/OggPage.h"
#include "Formats/VorbisCommentWalk.h"
#include "Playback/Miniaudio/VorbisCodebooks.h"

#include <array>
#include <string_view>
#include <vector>

namespace tamsy {
namespace {

using Bytes = ByteCursor::Bytes;
using Packet = std::vector<std::byte>;

constexpr std::size_t largestPacket = 67'108'864; // comments hold covers, a third larger than files

/// Takes packets from the pages at a file's start.
class PacketReader {
  public:
    explicit PacketReader(const AudioFile& file) : file_(file) {}

    /// In bytes from the file's start.
    [[nodiscard]] std::uint64_t position() const { return position_; }

    /// The next packet, whole; or nothing.
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

  private:
    bool readPageHeader(bool continuesPacket) {
        const auto header = parseOggPageHeader(file_.read(position_, header_));
        if (!header || header->laces.empty() || header->isContinued != continuesPacket)
            return false;
        segments_ = header->laces;
        position_ += header->size();
        return true;
    }

    const AudioFile& file_;
    std::uint64_t position_ = 0;
    std::array<std::byte, OggPageHeader::maxSize> header_{};
    Bytes segments_; // of the page, those not taken yet
};

/// What stands behind a header packet's type and name.
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

} // namespace

std::optional<std::uint64_t> vorbisHeaderBytes(const AudioFile& file) {
    PacketReader reader(file);
    if (!bodyOf(reader.next(), "\1vorbis"))
        return std::nullopt;
    const auto commentPacket = reader.next();
    const auto comments = bodyOf(commentPacket, "\3vorbis");
    if (!comments || !commentsFit(*comments))
        return std::nullopt;
    const auto setupPacket = reader.next();
    const auto setup = bodyOf(setupPacket, "\5vorbis");
    if (!setup || !setupFits(*setup))
        return std::nullopt;
    return reader.position();
}

} // namespace tamsy
