#include "Tags/Ogg.h"

#include "Formats/FlacBlock.h"
#include "Formats/OggPackets.h"
#include "Tags/Flac.h"
#include "Tags/VorbisComment.h"

#include <algorithm>

namespace tamsy::media {

namespace {

enum class Codec { Vorbis, Opus, Flac };

constexpr int mostStreams = 32;
constexpr int mostFlacBlocks = 64;
constexpr std::uint64_t noGranule = UINT64_MAX;

// The last page starts within the longest page's size of the end, usually much closer.
constexpr std::uint64_t tailSizes[] = {8192, 66'000};

struct Stream {
    Codec codec = Codec::Vorbis;
    std::uint64_t offset = 0;
    std::uint32_t serial = 0;
    std::uint32_t sampleRate = 0;
    std::uint64_t preSkip = 0;
};

std::optional<Stream> identify(ByteWindow& window, const OggPage& page) {
    const Bytes packet = window.readUpTo(page.body, 48);
    ByteCursor cursor(packet);
    Stream stream;
    stream.serial = page.serial;
    if (asText(packet).starts_with("\x01vorbis") && cursor.skip(12)) {
        stream.sampleRate = cursor.readU32le().value_or(0);
        return stream;
    }
    if (asText(packet).starts_with("OpusHead") && cursor.skip(10)) {
        stream.codec = Codec::Opus;
        stream.preSkip = cursor.readU16le().value_or(0);
        stream.sampleRate = 48'000; // of granules, whatever the source's sample rate
        return stream;
    }
    if (asText(packet).starts_with("\x7F"
                                   "FLAC") &&
        cursor.skip(27)) {
        stream.codec = Codec::Flac;
        stream.sampleRate = cursor.readU24().value_or(0) >> 4U;
        return stream;
    }
    return std::nullopt;
}

/// The first audio stream among those that start together.
std::optional<Stream> findStream(ByteWindow& window, std::uint64_t offset) {
    for (int count = 0; count < mostStreams; ++count) {
        const auto page = readOggPage(window, offset);
        if (!page || !page->isFirst)
            break;
        if (auto stream = identify(window, *page)) {
            stream->offset = offset;
            return stream;
        }
        offset = page->end;
    }
    return std::nullopt;
}

/// The first byte of a FLAC frame, 0xFF, read as a block type.
constexpr std::uint8_t soundFrame = 0x7F;

void readFlacBlocks(MediaParse& parse, OggPacketWalk& walk) {
    for (int count = 0; count < mostFlacBlocks; ++count) {
        const auto packet = walk.next();
        if (!packet)
            break;
        ByteWindow window(*packet);
        const auto block = parseFlacBlockHeader(window.read(0, FlacBlockHeader::size));
        if (!block || block->type == soundFrame)
            break;
        if (block->type == FlacBlockHeader::VorbisComment)
            readVorbisComments(parse.items, packet, window, block->size, packet->size());
        else if (block->type == FlacBlockHeader::Picture)
            addFlacPicture(parse.items, packet, block->size, packet->size());
        if (block->isLast)
            break;
    }
}

void readComments(MediaParse& parse, const Stream& stream) {
    OggPacketWalk walk(parse.source, parse.window, stream.offset, stream.serial);
    if (!walk.next())
        return;
    if (stream.codec == Codec::Flac)
        return readFlacBlocks(parse, walk);
    const auto packet = walk.next();
    if (!packet)
        return;
    ByteWindow window(*packet);
    const std::string_view signature = stream.codec == Codec::Opus ? "OpusTags" : "\x03vorbis";
    if (window.matches(0, signature))
        readVorbisComments(parse.items, packet, window, signature.size(), packet->size());
}

/// The granule position of the stream's last page within the file's last `length` bytes.
std::optional<std::uint64_t> lastGranule(const ByteSource& source, std::uint64_t length,
                                         std::uint32_t serial) {
    const std::uint64_t begin = source.size() - std::min(length, source.size());
    ByteWindow window(source, static_cast<std::size_t>(length));
    const std::string_view tail = asText(window.readUpTo(begin, length));
    std::size_t place = tail.rfind("OggS");
    while (place != std::string_view::npos) {
        ByteCursor cursor(std::as_bytes(std::span(tail)).subspan(place));
        if (cursor.skip(6)) {
            const std::uint64_t granule = cursor.readU64le().value_or(noGranule);
            if (granule != noGranule && cursor.readU32le() == serial)
                return granule;
        }
        place = place == 0 ? std::string_view::npos : tail.rfind("OggS", place - 1);
    }
    return std::nullopt;
}

double durationOf(const ByteSource& source, const Stream& stream) {
    for (const std::uint64_t length : tailSizes) {
        const auto granule = lastGranule(source, length, stream.serial);
        if (granule)
            return static_cast<double>(*granule - std::min(*granule, stream.preSkip)) /
                   stream.sampleRate;
    }
    return 0;
}

} // namespace

double readOgg(MediaParse& parse, std::uint64_t offset) {
    const auto stream = findStream(parse.window, offset);
    if (!stream)
        return 0;
    readComments(parse, *stream);
    return parse.wantsDuration ? durationOf(*parse.source, *stream) : 0;
}

} // namespace tamsy::media
