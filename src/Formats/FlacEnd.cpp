#include "Formats/FlacEnd.h"

#include <algorithm>
#include <span>
#include <vector>

namespace tamsy {
namespace {

struct Candidate {
    std::size_t offset = 0;
    FlacFrameHeader header;
};

/// Everything that looks like a frame header; some megabytes of audio contain one false one.
std::vector<Candidate> candidatesIn(std::span<const std::byte> bytes) {
    std::vector<Candidate> found;
    const auto end = bytes.end();
    for (auto at = std::find(bytes.begin(), end, std::byte{0xFF}); at != end;
         at = std::find(at + 1, end, std::byte{0xFF})) {
        const auto offset = static_cast<std::size_t>(at - bytes.begin());
        if (const auto header = parseFlacFrameHeader(bytes.subspan(offset)))
            found.push_back({offset, *header});
    }
    return found;
}

/// Whether the first candidate starts a complete frame, which ends at a later candidate or at the
/// end. The truncated frame at the end of a cut file doesn't, nor does a false header.
bool isWhole(std::span<const std::byte> bytes, std::span<const Candidate> candidates) {
    constexpr std::size_t enough = 4;
    const std::size_t start = candidates.front().offset;
    for (std::size_t i = 1; i < std::min(candidates.size() + 1, enough); ++i) {
        const std::size_t end = i < candidates.size() ? candidates[i].offset : bytes.size();
        if (isWholeFlacFrame(bytes.subspan(start, end - start)))
            return true;
    }
    return false;
}

} // namespace

std::optional<FlacEnd> findFlacEnd(ByteCursor::Bytes tail, std::uint32_t blockSize) {
    const auto candidates = candidatesIn(tail);
    for (std::size_t index = candidates.size(); index-- > 0;) {
        const auto& [offset, header] = candidates[index];
        if (isWhole(tail, std::span(candidates).subspan(index)))
            return FlacEnd{header.firstSample(blockSize) + header.blockSize, header};
    }
    return std::nullopt;
}

} // namespace tamsy
