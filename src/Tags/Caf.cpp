#include "Tags/Caf.h"

#include "Tags/Chunks.h"
#include "Tags/Id3v2.h"

#include <algorithm>
#include <bit>

namespace tamsy::media {

namespace {

constexpr std::uint64_t editCountSize = 4;

struct Description {
    double sampleRate = 0;
    std::uint32_t bytesPerPacket = 0;
    std::uint32_t framesPerPacket = 0;
};

Description readDescription(ByteCursor cursor) {
    Description description;
    description.sampleRate = std::bit_cast<double>(cursor.readU64().value_or(0));
    if (cursor.skip(8)) {
        description.bytesPerPacket = cursor.readU32().value_or(0);
        description.framesPerPacket = cursor.readU32().value_or(0);
    }
    return description;
}

std::optional<CommonKey> commonKeyOf(const QByteArray& key) {
    if (key == "title")
        return CommonKey::Title;
    if (key == "artist")
        return CommonKey::Artist;
    if (key == "album")
        return CommonKey::AlbumName;
    return std::nullopt;
}

void addInfo(MediaParse& parse, const QByteArray& name, const QByteArray& value) {
    const auto key = commonKeyOf(name.toLower());
    if (!parse.items.wantsText(key, static_cast<std::uint64_t>(value.size())))
        return;
    if (key)
        return parse.items.addFallback(*key, utf8Text(value));
    MediaItem item;
    item.name = QString::fromUtf8(name);
    parse.items.add(std::move(item), utf8Text(value));
}

/// Reads an info chunk's pairs of terminated texts.
void readInfo(MediaParse& parse, const Chunk& chunk) {
    // Enough for a scan, and for the longest lyrics.
    constexpr std::uint64_t mebibyte = std::uint64_t{1024} * 1024;
    const std::uint64_t longest = (parse.items.listsEverything() ? 8 : 1) * mebibyte;
    const QByteArray bytes = parse.window.copy(chunk.body, std::min(chunk.size, longest));
    qsizetype position = 4; // after the count, which the terminators make redundant
    for (int count = 0; count < maxEntries; ++count) {
        const qsizetype keyEnd = bytes.indexOf('\0', position);
        const qsizetype valueEnd = keyEnd < 0 ? -1 : bytes.indexOf('\0', keyEnd + 1);
        if (valueEnd < 0)
            break;
        addInfo(parse, bytes.sliced(position, keyEnd - position),
                bytes.sliced(keyEnd + 1, valueEnd - keyEnd - 1));
        position = valueEnd + 1;
    }
}

} // namespace

double readCaf(MediaParse& parse, std::uint64_t offset) {
    Description description;
    double frames = 0;
    std::uint64_t dataBytes = 0;
    ChunkWalk walk(parse.window, ChunkSizes::BigEndian64, offset + 8, parse.window.size());
    while (auto chunk = walk.next()) {
        ByteCursor cursor(
            parse.window.readUpTo(chunk->body, std::min<std::uint64_t>(chunk->size, 32)));
        if (chunk->name == "desc")
            description = readDescription(cursor);
        else if (chunk->name == "pakt" && cursor.skip(8))
            frames = static_cast<double>(cursor.readU64().value_or(0));
        else if (chunk->name == "data")
            dataBytes = chunk->size - std::min(chunk->size, editCountSize);
        else if (chunk->name == "info")
            readInfo(parse, *chunk);
        else if (chunk->name == "id3 " || chunk->name == "ID3 ")
            readId3v2Tags(parse, chunk->body, chunk->body + chunk->size);
    }
    if (description.bytesPerPacket != 0) {
        const std::uint64_t packets = dataBytes / description.bytesPerPacket;
        frames = static_cast<double>(packets) * description.framesPerPacket;
    }
    // A packet has at least one byte.
    const bool isBorneOut = description.framesPerPacket == 0 ||
                            frames / description.framesPerPacket <= static_cast<double>(dataBytes);
    return description.sampleRate > 0 && isBorneOut ? frames / description.sampleRate : 0;
}

} // namespace tamsy::media
