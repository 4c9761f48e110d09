#include "Tags/Aiff.h"

#include "Tags/Chunks.h"
#include "Tags/Id3v2.h"

#include <algorithm>
#include <cmath>

namespace tamsy::media {

namespace {

/// Converts an 80-bit float, the format of AIFF's sample rate.
double readExtended(ByteCursor& cursor) {
    const int exponent = cursor.readU16().value_or(0) & 0x7FFF;
    const std::uint64_t mantissa = cursor.readU64().value_or(0);
    return std::ldexp(static_cast<double>(mantissa), exponent - 16'383 - 63);
}

struct CommonChunk {
    std::uint32_t frames = 0;
    std::uint32_t frameBytes = 0; ///< 0 if the sound is compressed
    double sampleRate = 0;
};

CommonChunk readCommon(ByteCursor cursor, bool isPlain) {
    CommonChunk common;
    const std::uint32_t channels = cursor.readU16().value_or(0);
    common.frames = cursor.readU32().value_or(0);
    const std::uint32_t bits = cursor.readU16().value_or(0);
    common.sampleRate = readExtended(cursor);
    common.frameBytes = isPlain ? channels * ((bits + 7) / 8) : 0;
    return common;
}

double durationOf(const CommonChunk& common, std::uint64_t soundBytes) {
    double frames = common.frames;
    if (common.frameBytes != 0 && soundBytes != 0)
        frames = std::min(frames, static_cast<double>(soundBytes) / common.frameBytes);
    return common.sampleRate > 0 ? frames / common.sampleRate : 0;
}

} // namespace

double readAiff(MediaParse& parse, std::uint64_t offset) {
    const bool isPlain = parse.window.matches(offset + 8, "AIFF");
    CommonChunk common;
    std::uint64_t soundBytes = 0;
    ChunkWalk walk(parse.window, ChunkSizes::BigEndian32, offset + 12, parse.window.size());
    while (const auto chunk = walk.next()) {
        if (chunk->name == "COMM") {
            common = readCommon(ByteCursor(parse.window.read(
                                    chunk->body, std::min<std::uint64_t>(chunk->size, 18))),
                                isPlain);
        } else if (chunk->name == "SSND") {
            soundBytes = chunk->size > 8 ? chunk->size - 8 : 0;
        } else if (chunk->name == "ID3 " || chunk->name == "id3 ") {
            readId3v2Tags(parse, chunk->body, chunk->body + chunk->size);
        } else if (chunk->name == "ANNO") {
            addNamedChunk(parse, *chunk);
        } else if (chunk->name == "NAME" || chunk->name == "AUTH") {
            const auto key = chunk->name == "NAME" ? CommonKey::Title : CommonKey::Artist;
            if (const auto text = chunkText(parse, *chunk, key))
                parse.items.addFallback(key, *text);
        }
    }
    return durationOf(common, soundBytes);
}

} // namespace tamsy::media
