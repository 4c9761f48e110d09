#pragma once

#include "Formats/ByteWindow.h"

#include <cstdint>
#include <optional>

namespace tamsy::media {

/// The header of a FLAC metadata block (RFC 9639, section 8.1).
struct FlacBlockHeader {
    static constexpr std::size_t size = 4;

    enum Type : std::uint8_t { StreamInfo = 0, VorbisComment = 4, Picture = 6 };

    std::uint8_t type = 0; ///< a `Type`, or one that isn't read here
    bool isLast = false;
    std::uint32_t length = 0; ///< bytes of the body
};

/// Parses the header at the start of `bytes`; nothing if there are fewer than four.
[[nodiscard]] std::optional<FlacBlockHeader> parseFlacBlockHeader(Bytes bytes);

/// A metadata block in a file.
struct FlacBlock {
    std::uint8_t type = 0;
    std::uint64_t begin = 0; ///< of the body
    std::uint64_t end = 0;   ///< of the body, where the next block or the first frame begins
};

/// Steps through the metadata blocks of a file.
class FlacBlockWalk {
  public:
    /// `offset` is that of the signature "fLaC".
    FlacBlockWalk(ByteWindow& window, std::uint64_t offset)
        : window_(window), position_(offset + signatureSize) {}

    /// The next block; nothing after the last one, or if the file ends within one.
    [[nodiscard]] std::optional<FlacBlock> next();

  private:
    static constexpr std::uint64_t signatureSize = 4;

    ByteWindow& window_;
    std::uint64_t position_;
    bool hasEnded_ = false;
};

/// The encoded picture in the body of a PICTURE block (RFC 9639, section 8.8), not copied; nothing
/// if a length in it is wrong.
[[nodiscard]] std::optional<Bytes> pictureInFlacBlock(Bytes body);

} // namespace tamsy::media
