#pragma once

#include "Formats/ByteCursor.h"

#include <array>
#include <bitset>
#include <cstdint>
#include <optional>

namespace tamsy {

/// The block sizes of a Vorbis stream, which determine how many samples its packets decode to
/// (Vorbis I, 4.2.4 and 4.3.1).
class VorbisBlockSizes {
  public:
    /// Nothing if either header is damaged.
    [[nodiscard]] static std::optional<VorbisBlockSizes> parse(ByteCursor::Bytes identification,
                                                               ByteCursor::Bytes setup);

    /// The block size, in samples, of a packet whose first byte is `first`; 0 if it isn't audio.
    [[nodiscard]] std::uint32_t of(std::byte first) const;

  private:
    std::array<std::uint32_t, 2> sizes_{};
    std::bitset<64> isLong_; ///< by mode
    unsigned modeBits_ = 0;
};

/// The number of samples at 48,000 Hz that an Opus packet decodes to (RFC 6716, section 3.1). Only
/// its first two bytes are needed.
[[nodiscard]] std::uint32_t opusSamples(ByteCursor::Bytes packet);

} // namespace tamsy
