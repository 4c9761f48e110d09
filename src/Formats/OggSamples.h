#pragma once

#include "Formats/ByteCursor.h"

#include <array>
#include <bitset>
#include <cstdint>
#include <optional>

namespace tamsy {

/// How many samples a Vorbis packet decodes to, which only its stream's setup header tells
/// (Vorbis I, 4.2.4 and 4.3.1).
class VorbisBlockSizes {
  public:
    /// Nothing if either header is damaged.
    [[nodiscard]] static std::optional<VorbisBlockSizes> parse(ByteCursor::Bytes identification,
                                                               ByteCursor::Bytes setup);

    /// Samples in the block of a packet that begins with `first`; 0 if it is no sound.
    [[nodiscard]] std::uint32_t of(std::byte first) const;

  private:
    std::array<std::uint32_t, 2> sizes_{};
    std::bitset<64> isLong_; ///< by mode
    unsigned modeBits_ = 0;
};

/// Samples at 48,000 Hz that an Opus packet decodes to (RFC 6716, section 3.1), by the bytes it
/// begins with.
[[nodiscard]] std::uint32_t opusSamples(ByteCursor::Bytes packet);

} // namespace tamsy
