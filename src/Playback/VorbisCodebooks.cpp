#include "Playback/VorbisCodebooks.h"

#include <bit>
#include <cstdint>

namespace tamsy {
namespace {

// Encoders of all rates and qualities stay below a tenth of each.
constexpr std::uint64_t mostEntries = 65'536;   // in one book
constexpr std::uint64_t mostValues = 1'048'576; // in all books

/// Reads as Vorbis packs: the lowest bit first. Behind the end there are zeros.
class BitCursor {
  public:
    explicit BitCursor(std::span<const std::byte> bytes) : bytes_(bytes) {}

    std::uint32_t read(unsigned count) {
        std::uint32_t value = 0;
        for (unsigned i = 0; i < count; ++i, ++position_) {
            if (position_ / 8 < bytes_.size())
                value |= std::to_integer<std::uint32_t>(bytes_[position_ / 8] >> (position_ % 8) &
                                                        std::byte{1})
                         << i;
        }
        return value;
    }

    void skip(std::uint64_t count) { position_ += count; }

    [[nodiscard]] bool isPastEnd() const { return position_ > std::uint64_t{8} * bytes_.size(); }

  private:
    std::span<const std::byte> bytes_;
    std::uint64_t position_ = 0; // in bits
};

/// Passes over the lengths of the code words, told in rising order; false if they are nonsense.
bool skipOrderedLengths(BitCursor& bits, std::uint32_t entries) {
    std::uint32_t length = bits.read(5) + 1;
    for (std::uint32_t entry = 0; entry < entries; ++length) {
        const auto width = static_cast<unsigned>(std::bit_width(entries - entry));
        entry += bits.read(width);
        if (entry > entries || length >= 32)
            return false;
    }
    return true;
}

/// The same, told one by one. A book that has none at all is null to the decoder, which uses it.
bool skipLengths(BitCursor& bits, std::uint32_t entries) {
    const bool isSparse = bits.read(1) != 0;
    bool isUsed = false;
    for (std::uint32_t entry = 0; entry < entries; ++entry) {
        if (isSparse && bits.read(1) == 0)
            continue;
        bits.skip(5);
        isUsed = true;
    }
    return isUsed;
}

/// The largest number whose power of `dimensions` is no more than `entries`.
std::uint64_t gridSide(std::uint64_t entries, std::uint64_t dimensions) {
    for (std::uint64_t side = 1;; ++side) {
        std::uint64_t power = 1;
        // A side of 1 fits; any other soon grows past.
        for (std::uint64_t i = 0; i < dimensions && power <= entries; ++i)
            power *= side + 1;
        if (power > entries)
            return side;
    }
}

/// Passes over a book. `values` counts those of all books.
bool skipBook(BitCursor& bits, std::uint64_t& values) {
    if (bits.read(24) != 0x564342)
        return false;
    const std::uint32_t dimensions = bits.read(16);
    const std::uint32_t entries = bits.read(24);
    const std::uint64_t size = std::uint64_t{entries} * dimensions;
    values += size;
    if (size == 0 || entries > mostEntries || values > mostValues)
        return false;
    if (!(bits.read(1) != 0 ? skipOrderedLengths(bits, entries) : skipLengths(bits, entries)))
        return false;
    if (const std::uint32_t lookup = bits.read(4); lookup != 0) {
        bits.skip(64); // the least value and the step, as floats
        const std::uint32_t width = bits.read(4) + 1;
        bits.skip(1 + width * (lookup == 1 ? gridSide(entries, dimensions) : size));
    }
    return !bits.isPastEnd();
}

} // namespace

bool codebooksFit(std::span<const std::byte> body) {
    BitCursor bits(body);
    std::uint64_t values = 0;
    const std::uint32_t count = bits.read(8) + 1;
    for (std::uint32_t book = 0; book < count; ++book) {
        if (!skipBook(bits, values))
            return false;
    }
    return true;
}

} // namespace tamsy
