#include "Tags/Ogg.h"

#include "Formats/FlacBlock.h"
#include "Formats/OggPackets.h"
#include "Tags/OggDuration.h"
#include "Tags/OggLinks.h"
#include "Tags/VorbisComment.h"

#include <algorithm>

namespace tamsy::media {

namespace {

constexpr int maxStreams = 32;
constexpr int maxLinks = 256;
constexpr int maxFlacBlocks = 64;

std::optional<OggStream> identify(ByteWindow& window, const OggPage& page) {
    const Bytes packet = window.readUpTo(page.body, 80);
    ByteCursor cursor(packet);
    OggStream stream;
    stream.serial = page.serial;
    if (asText(packet).starts_with("\x01vorbis") && cursor.skip(12)) {
        stream.sampleRate = cursor.readU32LE().value_or(0);
        return stream;
    }
    if (asText(packet).starts_with("OpusHead") && cursor.skip(10)) {
        stream.codec = OggCodec::Opus;
        stream.preSkip = cursor.readU16LE().value_or(0);
        stream.sampleRate = 48'000; // of granules, whatever the source's sample rate
        return stream;
    }
    if (asText(packet).starts_with("Speex   ") && cursor.skip(36)) {
        stream.codec = OggCodec::Speex;
        stream.sampleRate = cursor.readU32LE().value_or(0);
        const std::uint64_t frameSamples = cursor.skip(16) ? cursor.readU32LE().value_or(0) : 0;
        const std::uint64_t frames = cursor.skip(4) ? cursor.readU32LE().value_or(0) : 0;
        stream.packetSamples = frameSamples * frames;
        return stream;
    }
    if (asText(packet).starts_with("\x7F"
                                   "FLAC") &&
        cursor.skip(27)) {
        stream.codec = OggCodec::Flac;
        stream.sampleRate = cursor.readU24().value_or(0) >> 4U;
        return stream;
    }
    return std::nullopt;
}

/// The first audio stream among those that start together.
std::optional<OggStream> findStream(ByteWindow& window, std::uint64_t offset) {
    for (int count = 0; count < maxStreams; ++count) {
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
    for (int count = 0; count < maxFlacBlocks; ++count) {
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

void readComments(MediaParse& parse, const OggStream& stream) {
    OggPacketWalk walk(parse.source, parse.window, stream.offset, stream.serial);
    if (!walk.next())
        return;
    if (stream.codec == OggCodec::Flac)
        return readFlacBlocks(parse, walk);
    const auto packet = walk.next();
    if (!packet)
        return;
    ByteWindow window(*packet);
    const std::string_view signature = stream.codec == OggCodec::Opus    ? "OpusTags"
                                       : stream.codec == OggCodec::Speex ? ""
                                                                         : "\x03vorbis";
    if (window.matches(0, signature))
        readVorbisComments(parse.items, packet, window, signature.size(), packet->size());
}

} // namespace

double readOgg(MediaParse& parse, std::uint64_t offset) {
    auto stream = findStream(parse.window, offset);
    if (!stream)
        return 0;
    readComments(parse, *stream);
    if (!parse.wantsDuration)
        return 0;
    OggLinkSearch search(*parse.source);
    double seconds = 0;
    for (int link = 0; stream && link < maxLinks; ++link) {
        const std::uint64_t end = search.endOfLink(offset);
        seconds += oggDuration(parse, *stream, end);
        offset = end;
        stream = findStream(parse.window, offset);
    }
    return seconds;
}

} // namespace tamsy::media
