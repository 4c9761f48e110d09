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
    auto block = readFlacBlock(parse.window, offset + 4);
    for (int count = 0; block && count < mostEntries; ++count) {
        if (block->type == FlacBlockHeader::StreamInfo && block->end - block->begin >= 18)
            seconds =
                flacDuration(parse.window.read(block->begin, 18), parse.window.size() - offset);
        const bool isComment = block->type == FlacBlockHeader::VorbisComment;
        if (isComment)
            readVorbisComments(parse.items, parse.source, parse.window, block->begin, block->end);
        // Only pictures and padding follow the comments, far apart.
        if (isComment || block->isLast)
            break;
        block = readFlacBlock(parse.window, block->end);
    }
    return seconds;
}

} // namespace tamsy::media
