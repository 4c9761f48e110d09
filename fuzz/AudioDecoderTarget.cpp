#include "FuzzTarget.h"
#include "Playback/Miniaudio/AudioDecoder.h"
#include "Tags/MemoryFile.h"

#include <array>
#include <cmath>

using namespace tamsy;

/// The Vorbis decoder leaks some kilobytes when it rejects a setup header.
// NOLINTNEXTLINE(bugprone-reserved-identifier)
extern "C" const char* __lsan_default_suppressions() {
    return "leak:start_decoder";
}

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    MemoryFile file;
    file.append(fuzz::asText(data, size));
    AudioDecoder decoder;
    if (decoder.open(file.url()) != MA_SUCCESS)
        return 0;
    const double length = decoder.length();
    fuzz::require(std::isfinite(length) && length >= 0);
    constexpr std::size_t frames = 1024;
    std::array<float, frames * AudioDecoder::channels> output{};
    for (const double place : {0.0, length / 2, 0.1, length, 2 * length + 1, 0.0}) {
        (void)decoder.seek(place);
        for (int block = 0; block < 8; ++block)
            fuzz::require(decoder.read(output.data(), frames) <= frames);
        fuzz::require(decoder.place() >= 0);
    }
    return 0;
}
