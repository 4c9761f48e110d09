#pragma once

#include <cstddef>
#include <span>

namespace tamsy {

/// Whether a setup header (Vorbis I, 4.2.4) is safe for the decoder: its codebooks are complete and
/// of a realistic size, and none without entries is used where the decoder doesn't check for that.
/// Early encoders wrote such books at low qualities.
/// @param body what follows the packet's type and name.
[[nodiscard]] bool setupFits(std::span<const std::byte> body);

} // namespace tamsy
