#include "Tags/Flac.h"

#include "Formats/FlacBlock.h"
#include "Tags/VorbisComment.h"

namespace tamsy::media {

namespace {

constexpr std::uint64_t smallestFrame = 11;
constexpr std::uint64_t mostFrameSamples = 65'535;

} // namespace

double flacDuration(Bytes streamInfo, std::uint64_t streamBytes) {
    ByteCursor cursor(streamInfo);
    if (!cursor.skip(10))
        return 0;
    // 20 bits of sample rate, 3 of channels, 5 of sample size, 36 of samples.
    const std::uint64_t packed = cursor.readU64().value_or(0);
    const std::uint64_t sampleRate = packed >> 44U;
    const std::uint64_t samples = packed & 0xFFFFFFFFFU;
    if (sampleRate == 0 || samples / mostFrameSamples > streamBytes / smallestFrame)
        return 0;
    return static_cast<double>(samples) / static_cast<double>(sampleRate);
}

double readFlac(MediaParse& parse, std::uint64_t offset) {
    double seconds = 0;
    FlacBlockWalk walk(parse.window, offset);
    for (int count = 0; count < mostEntries; ++count) {
        const auto block = walk.next();
        if (!block)
            break;
        if (block->type == FlacBlockHeader::StreamInfo && block->end - block->begin >= 18)
            seconds =
                flacDuration(parse.window.read(block->begin, 18), parse.window.size() - offset);
        if (block->type != FlacBlockHeader::VorbisComment)
            continue;
        readVorbisComments(parse.items, parse.source, parse.window, block->begin, block->end);
        break; // Only pictures and padding follow the comments, far apart.
    }
    return seconds;
}

} // namespace tamsy::media
