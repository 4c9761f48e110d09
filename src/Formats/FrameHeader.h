#pragma once

#include "Formats/ByteWindow.h"

#include <cstdint>
#include <optional>

namespace tamsy::media {

/// The header of one frame of MPEG audio (ISO 11172-3, 13818-3) or of AAC in ADTS (ISO 13818-7).
struct FrameHeader {
    std::uint32_t length = 0; ///< bytes, this header included
    std::uint32_t samples = 0;
    std::uint32_t sampleRate = 0;
    /// The bits that are equal in all frames of a stream.
    std::uint32_t kind = 0;
    /// MPEG layer III: the offset in the frame at which a Xing header would start.
    std::uint32_t infoStart = 0;
};

/// The size of the longest frame header in bytes.
constexpr std::size_t frameHeaderSize = 7;

/// Parses the header at the start of `bytes`; nothing if there is none or the frame's length is
/// unknown.
[[nodiscard]] std::optional<FrameHeader> parseFrameHeader(Bytes bytes);

} // namespace tamsy::media
