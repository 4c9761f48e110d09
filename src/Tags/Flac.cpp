#include "Tags/Flac.h"

#include "Formats/FlacBlock.h"
#include "Formats/FlacEnd.h"
#include "Tags/VorbisComment.h"

#include <algorithm>

namespace tamsy::media {

namespace {

constexpr std::size_t streamInfoSize = 18; ///< of what is read of it
constexpr std::uint64_t minFrameSize = 11;
constexpr std::uint64_t maxFrameSamples = 65'535;

struct StreamInfo {
    std::uint32_t blockSize = 0;
    std::uint32_t maxFrameBytes = 0; ///< 0 if unknown
    std::uint64_t sampleRate = 0;
    std::uint64_t samples = 0; ///< 0 if unknown
};

StreamInfo parseStreamInfo(ByteCursor cursor) {
    StreamInfo info;
    info.blockSize = cursor.readU16().value_or(0);
    constexpr std::uint64_t maxBlockAndMinFrameSize = 5;
    if (!cursor.skip(maxBlockAndMinFrameSize))
        return info;
    info.maxFrameBytes = cursor.readU24().value_or(0);
    // 20 bits of sample rate, 3 of channels, 5 of sample size, 36 of samples.
    const std::uint64_t packed = cursor.readU64().value_or(0);
    info.sampleRate = packed >> 44U;
    info.samples = packed & 0xFFFFFFFFFU;
    return info;
}

/// The last frame's number tells the length if the header doesn't.
std::uint64_t samplesByLastFrame(const ByteSource& source, const StreamInfo& info) {
    const std::uint64_t size =
        std::min<std::uint64_t>(source.size(), flacTailBytes(info.maxFrameBytes));
    ByteWindow window(source, static_cast<std::size_t>(size));
    const auto end = findFlacEnd(window.read(source.size() - size, static_cast<std::size_t>(size)),
                                 info.blockSize);
    return end ? end->samples : 0;
}

double durationOf(const ByteSource& source, const StreamInfo& info) {
    if (info.sampleRate == 0)
        return 0;
    const bool isPossible = info.samples / maxFrameSamples <= source.size() / minFrameSize;
    const std::uint64_t samples =
        info.samples != 0 && isPossible ? info.samples : samplesByLastFrame(source, info);
    return static_cast<double>(samples) / static_cast<double>(info.sampleRate);
}

} // namespace

double readFlac(MediaParse& parse, std::uint64_t offset) {
    StreamInfo info;
    FlacBlockWalk walk(parse.window, offset);
    for (int count = 0; count < maxEntries; ++count) {
        const auto block = walk.next();
        if (!block)
            break;
        if (block->type == FlacBlockHeader::StreamInfo)
            info = parseStreamInfo(ByteCursor(parse.window.readUpTo(
                block->begin, std::min(streamInfoSize, block->end - block->begin))));
        if (block->type != FlacBlockHeader::VorbisComment)
            continue;
        readVorbisComments(parse.items, parse.source, parse.window, block->begin, block->end);
        break; // Only pictures and padding follow the comments, far apart.
    }
    return parse.wantsDuration ? durationOf(*parse.source, info) : 0;
}

} // namespace tamsy::media
