#include "Tags/Flac.h"

#include "Tags/VorbisComment.h"

namespace tamsy::media {

namespace {

constexpr std::uint8_t lastBlock = 0x80;
constexpr std::uint8_t streamInfoBlock = 0;
constexpr std::uint8_t commentBlock = 4;

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
    std::uint64_t position = offset + 4;
    for (int count = 0; count < mostEntries; ++count) {
        ByteCursor cursor(parse.window.read(position, 4));
        const auto type = cursor.readU8();
        const auto length = cursor.readU24();
        const std::uint64_t body = position + 4;
        if (!length || *length > parse.window.size() - body)
            break;
        position = body + *length;
        if ((*type & ~lastBlock) == streamInfoBlock && *length >= 18)
            seconds = flacDuration(parse.window.read(body, 18), parse.window.size() - offset);
        const bool isComment = (*type & ~lastBlock) == commentBlock;
        if (isComment)
            readVorbisComments(parse.items, parse.source, parse.window, body, position);
        // Behind the comments stand only pictures and padding, far apart.
        if (isComment || (*type & lastBlock) != 0)
            break;
    }
    return seconds;
}

} // namespace tamsy::media
