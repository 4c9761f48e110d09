#pragma once

#include <cstddef>
#include <span>

namespace tamsy {

/// Whether a setup header (Vorbis I, 4.2.4) is safe for the decoder: its codebooks are all there
/// and of a size that music has, and none without entries is used where the decoder doesn't ask for
/// that. Early encoders wrote such books at low qualities.
/// @param body what stands behind the packet's type and name.
[[nodiscard]] bool setupFits(std::span<const std::byte> body);

} // namespace tamsy
