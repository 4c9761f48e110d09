#pragma once

#include <cstddef>
#include <span>

namespace tamsy {

/// Whether the codebooks that a setup header begins with (Vorbis I, 3.2.1) are all there and of a
/// size that music has. The decoder multiplies their sizes without a look at what comes of it.
/// @param body what stands behind the packet's type and name.
[[nodiscard]] bool codebooksFit(std::span<const std::byte> body);

} // namespace tamsy
