#include "FuzzTarget.h"
#include "Playback/Miniaudio/DecodeAhead.h"
#include "Tags/MemoryFile.h"

#include <array>
#include <cmath>
#include <memory>
#include <optional>

using namespace tamsy;

namespace {

/// The threads of files before may not have noticed yet that nobody wants them.
std::unique_ptr<DecodeAhead> open(const FileURL& url) {
    while (true) {
        auto file = std::make_unique<DecodeAhead>(url);
        std::optional<ma_result> opened;
        while (!opened)
            opened = file->waitUntilOpened();
        if (*opened != MA_TOO_MANY_OPEN_FILES)
            return *opened == MA_SUCCESS ? std::move(file) : nullptr;
    }
}

/// As a device does, to the end or for a second.
void play(DecodeAhead& file) {
    std::array<StereoFrame, 1024> frames{};
    file.setRunning(true);
    for (int block = 0; block < 48 && !file.hasEnded() && !file.isWaiting(); ++block)
        fuzz::require(file.read(frames) <= frames.size());
    file.setRunning(false);
    fuzz::require(file.length() >= 0 && std::isfinite(file.endPosition()));
}

} // namespace

/// Seeks and plays; halfway the file loses its second half.
int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    MemoryFile memory;
    memory.append(fuzz::asText(data, size));
    const auto file = open(memory.url());
    if (!file)
        return 0;
    play(*file);
    const double length = file->length();
    for (const double target : {length / 2, 0.1, length, 2 * length + 1, 0.0}) {
        file->seek(target, 0, true);
        if (target == length)
            memory.resize(static_cast<off_t>(size / 2));
        file->seek(target / 2, target, true); // before the former has been answered
        while (!file->waitUntilSought()) {
        }
        play(*file);
    }
    return 0;
}
