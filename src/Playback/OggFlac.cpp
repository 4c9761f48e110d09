#include "Playback/OggFlac.h"

#include "Utils/ByteCursor.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <string_view>
#include <vector>

namespace tamsy {
namespace {

constexpr std::string_view capturePattern = "OggS";
constexpr std::uint64_t granuleOffset = 6;      // behind the pattern, version and flags
constexpr std::uint64_t largestPage = 65'307;   // header, segment table and data
constexpr std::uint64_t noGranule = UINT64_MAX; // a page on which no packet ends

} // namespace

bool isOgg(const AudioFile& file) {
    std::array<std::byte, capturePattern.size()> start{};
    static_cast<void>(file.read(0, start));
    return std::memcmp(start.data(), capturePattern.data(), start.size()) == 0;
}

std::uint64_t lastGranulePosition(const AudioFile& file) {
    std::vector<std::byte> buffer(2 * largestPage);
    const std::uint64_t start = file.size() - std::min<std::uint64_t>(file.size(), buffer.size());
    const auto tail = file.read(start, buffer);
    const std::string_view text(reinterpret_cast<const char*>(tail.data()), tail.size());
    for (std::size_t page = text.rfind(capturePattern); page != std::string_view::npos;
         page = page > 0 ? text.rfind(capturePattern, page - 1) : std::string_view::npos) {
        ByteCursor cursor(tail);
        const bool isInside = cursor.seek(page + granuleOffset);
        const auto granule = isInside ? cursor.readU64le() : std::nullopt;
        if (granule && *granule != noGranule)
            return *granule;
    }
    return 0;
}

} // namespace tamsy
