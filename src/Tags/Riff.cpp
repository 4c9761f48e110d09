#include "Tags/Riff.h"

#include "Tags/Chunks.h"
#include "Tags/FrameStream.h"
#include "Tags/Id3v2.h"

#include <algorithm>
#include <cmath>

namespace tamsy::media {

namespace {

constexpr std::uint64_t sizeIsElsewhere = 0xFFFFFFFF;
constexpr std::uint16_t formatPcm = 1;
constexpr std::uint16_t formatFloat = 3;
constexpr std::uint16_t formatALaw = 6;
constexpr std::uint16_t formatMuLaw = 7;
constexpr std::uint16_t formatMpeg = 0x50;
constexpr std::uint16_t formatMp3 = 0x55;
constexpr std::uint16_t formatExtensible = 0xFFFE;

struct WaveFormat {
    std::uint16_t format = 0;
    std::uint32_t sampleRate = 0;
    std::uint32_t bytesPerSecond = 0;
    std::uint16_t blockSize = 0;
    std::uint16_t framesPerBlock = 0; ///< if compressed
    std::uint32_t factFrames = 0;     ///< from a fact chunk
    std::uint64_t data = 0;           ///< offset of the audio data
    std::uint64_t dataBytes = 0;
    std::uint64_t longDataBytes = 0;
};

void readFormat(ByteCursor cursor, WaveFormat& wave) {
    wave.format = cursor.readU16LE().value_or(0);
    if (!cursor.skip(2))
        return;
    wave.sampleRate = cursor.readU32LE().value_or(0);
    wave.bytesPerSecond = cursor.readU32LE().value_or(0);
    wave.blockSize = cursor.readU16LE().value_or(0);
    constexpr std::uint64_t sampleSizeAndExtensionSize = 4;
    if (cursor.skip(sampleSizeAndExtensionSize))
        wave.framesPerBlock = cursor.readU16LE().value_or(0);
}

bool isPlain(std::uint16_t format) {
    constexpr std::uint16_t plain[] = {formatPcm, formatFloat, formatALaw, formatMuLaw,
                                       formatExtensible};
    return std::ranges::find(plain, format) != std::end(plain);
}

double durationOf(const WaveFormat& wave) {
    const auto bytes = static_cast<double>(wave.dataBytes);
    if (wave.blockSize == 0 || wave.sampleRate == 0)
        return wave.bytesPerSecond != 0 ? bytes / wave.bytesPerSecond : 0;
    if (isPlain(wave.format))
        return bytes / wave.blockSize / wave.sampleRate;
    const double byRate = wave.bytesPerSecond != 0 ? bytes / wave.bytesPerSecond : 0;
    const double blocks = bytes / wave.blockSize * wave.framesPerBlock / wave.sampleRate;
    const double stated = wave.factFrames / static_cast<double>(wave.sampleRate);
    const double expected = blocks > 0 ? blocks : byRate;
    // The fact chunk excludes the padding of the last block. One that differs by more is wrong.
    const double tolerance =
        std::max(0.05, 2.0 * wave.framesPerBlock / static_cast<double>(wave.sampleRate));
    const double farthest = blocks > 0 ? tolerance : expected;
    return stated > 0 && std::abs(stated - expected) < farthest ? stated : expected;
}

/// MPEG frames in a WAVE file are measured like an MP3 file.
double durationOf(MediaParse& parse, const WaveFormat& wave) {
    const bool isMpeg = wave.format == formatMp3 || wave.format == formatMpeg || wave.format == 0;
    if (!parse.wantsDuration || !isMpeg || wave.data == 0)
        return durationOf(wave);
    const auto first = findFirstFrame(parse, wave.data);
    return first ? frameStreamDuration(parse, *first) : durationOf(wave);
}

std::optional<CommonKey> commonKeyOf(const std::string& name) {
    if (name == "INAM")
        return CommonKey::Title;
    if (name == "IART")
        return CommonKey::Artist;
    if (name == "IPRD")
        return CommonKey::AlbumName;
    return std::nullopt;
}

void readInfo(MediaParse& parse, const Chunk& list) {
    if (!parse.window.matches(list.body, "INFO"))
        return;
    ChunkWalk walk(parse.window, ChunkSizes::LittleEndian32, list.body + 4, list.body + list.size);
    while (const auto chunk = walk.next()) {
        const auto key = commonKeyOf(chunk->name);
        if (!key)
            addNamedChunk(parse, *chunk);
        else if (const auto text = chunkText(parse, *chunk, key))
            parse.items.addFallback(*key, *text);
    }
}

} // namespace

double readRiff(MediaParse& parse, std::uint64_t offset) {
    WaveFormat wave;
    ChunkWalk walk(parse.window, ChunkSizes::LittleEndian32, offset + 12, parse.window.size());
    while (auto chunk = walk.next()) {
        const Bytes head =
            parse.window.readUpTo(chunk->body, std::min<std::uint64_t>(chunk->size, 28));
        ByteCursor cursor(head);
        if (chunk->name == "fmt ") {
            readFormat(cursor, wave);
        } else if (chunk->name == "ds64" && cursor.skip(8)) {
            wave.longDataBytes = cursor.readU64LE().value_or(0);
        } else if (chunk->name == "fact") {
            wave.factFrames = cursor.readU32LE().value_or(0);
        } else if (chunk->name == "data") {
            if (chunk->claimed == sizeIsElsewhere && wave.longDataBytes != 0)
                walk.resize(*chunk, wave.longDataBytes);
            wave.data = chunk->body;
            wave.dataBytes = chunk->size;
        } else if (chunk->name == "LIST") {
            readInfo(parse, *chunk);
        } else if (chunk->name == "id3 " || chunk->name == "ID3 ") {
            readId3v2Tags(parse, chunk->body, chunk->body + chunk->size);
        }
    }
    return durationOf(parse, wave);
}

} // namespace tamsy::media
