#include "FuzzTarget.h"
#include "Playback/EngineDecoder.h"
#include "Tags/MemoryFile.h"

#include <array>
#include <cmath>

using namespace tamsy;

/// The Vorbis decoder leaks some kilobytes when it rejects a setup header.
// NOLINTNEXTLINE(bugprone-reserved-identifier)
extern "C" const char* __lsan_default_suppressions() {
    return "leak:start_decoder";
}

namespace {

constexpr std::size_t stepCount = 15;

bool isHarmless(StereoFrame frame) {
    constexpr float loudest = 8; // a resampler may overshoot four times full scale
    return std::abs(frame.left) <= loudest && std::abs(frame.right) <= loudest;
}

} // namespace

/// The first byte picks the engine, the next ones seek and read by turns; then comes the file.
int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size <= 1 + stepCount)
        return 0;
    MemoryFile file;
    file.append(fuzz::asText(data + 1 + stepCount, size - 1 - stepCount));
    const bool isFirst = data[0] % 2 == 0;
    const auto decoder = isFirst ? test::EngineDecoder::openWithFirst(file.url())
                                 : test::EngineDecoder::openWithSecond(file.url());
    if (!decoder)
        return 0;
    const double length = decoder->length();
    fuzz::require(std::isfinite(length) && length >= 0);
    std::array<StereoFrame, 2048> frames{};
    for (std::size_t step = 0; step < stepCount; ++step) {
        const std::uint8_t operation = data[1 + step];
        if (operation < 128)
            (void)decoder->seek(length * operation / 120);
        for (int block = operation % 8; block >= 0; --block) {
            const std::size_t count = decoder->read(frames);
            fuzz::require(count <= frames.size());
            for (const StereoFrame frame : std::span(frames).first(count))
                fuzz::require(isHarmless(frame));
        }
        fuzz::require(std::isfinite(decoder->length()));
    }
    return 0;
}
