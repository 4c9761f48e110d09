#include "Tags/Chunks.h"

#include <algorithm>

namespace tamsy::media {

namespace {

std::uint64_t readSize(ByteCursor& cursor, ChunkSizes sizes) {
    switch (sizes) {
    case ChunkSizes::LittleEndian32:
        return cursor.readU32LE().value_or(0);
    case ChunkSizes::BigEndian32:
        return cursor.readU32().value_or(0);
    case ChunkSizes::BigEndian64:
        break;
    }
    return cursor.readU64().value_or(0);
}

} // namespace

std::optional<Chunk> ChunkWalk::next() {
    const std::uint64_t headerSize = sizes_ == ChunkSizes::BigEndian64 ? 12 : 8;
    if (left_-- <= 0 || end_ < headerSize || position_ > end_ - headerSize)
        return std::nullopt;
    ByteCursor cursor(window_.read(position_, headerSize));
    const auto name = cursor.readBytes(4);
    if (!name)
        return std::nullopt;
    Chunk chunk;
    chunk.name = asText(*name);
    chunk.body = position_ + headerSize;
    chunk.claimed = readSize(cursor, sizes_);
    resize(chunk, chunk.claimed);
    return chunk;
}

void ChunkWalk::resize(Chunk& chunk, std::uint64_t size) {
    chunk.size = std::min(size, end_ - chunk.body);
    const bool isPadded = sizes_ != ChunkSizes::BigEndian64 && chunk.size % 2 != 0;
    position_ = chunk.body + chunk.size + (isPadded ? 1 : 0);
}

std::optional<TagText> chunkText(MediaParse& parse, const Chunk& chunk,
                                 std::optional<CommonKey> key) {
    if (chunk.claimed > chunk.size || !parse.items.wantsText(key, chunk.size))
        return std::nullopt;
    const QByteArray bytes = parse.window.copy(chunk.body, chunk.size);
    const qsizetype end = bytes.indexOf('\0');
    return legacyText(end < 0 ? bytes : bytes.first(end));
}

void addNamedChunk(MediaParse& parse, const Chunk& chunk) {
    const auto text = chunkText(parse, chunk, std::nullopt);
    if (!text)
        return;
    MediaItem item;
    item.name = QString::fromLatin1(chunk.name.data(), static_cast<qsizetype>(chunk.name.size()));
    parse.items.add(std::move(item), *text);
}

} // namespace tamsy::media
