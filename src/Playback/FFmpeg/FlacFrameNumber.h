#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

namespace tamsy {

/// The number of a FLAC frame's first sample, as its header tells it (RFC 9639, 9.1.5).
/// @param streamInfo the body of the STREAMINFO block. Nothing if either is damaged.
[[nodiscard]] std::optional<std::int64_t> flacFrameNumber(std::span<const std::byte> frame,
                                                          std::span<const std::byte> streamInfo);

} // namespace tamsy
