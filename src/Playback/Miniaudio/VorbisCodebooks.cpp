#include "Playback/Miniaudio/VorbisCodebooks.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <optional>
#include <vector>

namespace tamsy {
namespace {

// Encoders stay below a tenth of each limit at all rates and qualities.
constexpr std::uint64_t maxEntries = 65'536;   // in one book
constexpr std::uint64_t maxValues = 1'048'576; // in all books

/// Reads bits as Vorbis packs them, lowest first. Past the end it reads zeros.
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

/// Skips code word lengths in ordered form; false if they are invalid.
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

/// Skips code word lengths in unordered form; returns whether any entry is used.
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
        // 1 always fits; any other value soon exceeds the limit.
        for (std::uint64_t i = 0; i < dimensions && power <= entries; ++i)
            power *= side + 1;
        if (power > entries)
            return side;
    }
}

struct Book {
    bool isUsable = false; // has a code word
};

/// Skips a codebook; nothing if it is invalid. `values` counts the values of all codebooks.
std::optional<Book> readBook(BitCursor& bits, std::uint64_t& values) {
    if (bits.read(24) != 0x564342)
        return std::nullopt;
    const std::uint32_t dimensions = bits.read(16);
    const std::uint32_t entries = bits.read(24);
    const std::uint64_t size = std::uint64_t{entries} * dimensions;
    values += size;
    if (size == 0 || entries > maxEntries || values > maxValues)
        return std::nullopt;
    const bool isOrdered = bits.read(1) != 0;
    const bool isUsable =
        isOrdered ? skipOrderedLengths(bits, entries) : skipLengths(bits, entries);
    if (isOrdered && !isUsable)
        return std::nullopt;
    if (const std::uint32_t lookup = bits.read(4); lookup != 0) {
        bits.skip(64); // minimum and delta, as floats
        const std::uint32_t width = bits.read(4) + 1;
        bits.skip(1 + width * (lookup == 1 ? gridSide(entries, dimensions) : size));
    }
    return bits.isPastEnd() ? std::nullopt : std::optional(Book{isUsable});
}

/// Reads what follows the codebooks (Vorbis I, 4.2.4), to find the books that the decoder uses
/// without checking whether they have entries.
class BookUses {
  public:
    BookUses(BitCursor& bits, std::span<const Book> books) : bits_(bits), books_(books) {}

    bool areSafe() {
        bits_.skip(16 * (std::uint64_t{bits_.read(6)} + 1)); // time domain transforms: placeholders
        return repeat(bits_.read(6) + 1, [this] { return readFloor(); }) &&
               repeat(bits_.read(6) + 1, [this] { return readResidue(); }) && !bits_.isPastEnd();
    }

  private:
    template <typename Read>
    static bool repeat(std::uint32_t count, Read read) {
        for (std::uint32_t i = 0; i < count; ++i) {
            if (!read())
                return false;
        }
        return true;
    }

    bool isUsable(std::uint32_t book) const {
        return book < books_.size() && books_[book].isUsable;
    }

    bool readFloor() {
        if (bits_.read(16) != 1) // the other type hasn't been used since 2001
            return false;
        std::array<std::uint32_t, 31> partitions{};
        const std::uint32_t count = bits_.read(5);
        std::uint32_t classes = 0;
        for (std::uint32_t i = 0; i < count; ++i) {
            partitions[i] = bits_.read(4);
            classes = std::max(classes, partitions[i] + 1);
        }
        std::array<std::uint32_t, 16> dimensions{};
        for (std::uint32_t i = 0; i < classes; ++i) {
            dimensions[i] = bits_.read(3) + 1;
            if (!readFloorClass())
                return false;
        }
        bits_.skip(2);
        const std::uint32_t width = bits_.read(4);
        for (std::uint32_t i = 0; i < count; ++i)
            bits_.skip(std::uint64_t{width} * dimensions[partitions[i]]);
        return true;
    }

    bool readFloorClass() {
        const std::uint32_t subclasses = bits_.read(2);
        if (subclasses != 0 && !isUsable(bits_.read(8)))
            return false;
        return repeat(1U << subclasses, [this] {
            const std::uint32_t book = bits_.read(8); // 0: none; otherwise the book's number plus 1
            return book == 0 || isUsable(book - 1);
        });
    }

    bool readResidue() {
        bits_.skip(16 + 3 * 24); // type, begin, end, partition size
        const std::uint32_t classifications = bits_.read(6) + 1;
        if (!isUsable(bits_.read(8)))
            return false;
        int stages = 0;
        for (std::uint32_t i = 0; i < classifications; ++i) {
            const std::uint32_t low = bits_.read(3);
            const std::uint32_t high = bits_.read(1) != 0 ? bits_.read(5) : 0;
            stages += std::popcount(low) + std::popcount(high);
        }
        bits_.skip(8 * static_cast<std::uint64_t>(stages)); // an empty book just ends the packet
        return true;
    }

    BitCursor& bits_;
    std::span<const Book> books_;
};

} // namespace

bool setupFits(std::span<const std::byte> body) {
    BitCursor bits(body);
    std::uint64_t values = 0;
    const std::uint32_t count = bits.read(8) + 1;
    std::vector<Book> books;
    for (std::uint32_t index = 0; index < count; ++index) {
        const auto book = readBook(bits, values);
        if (!book)
            return false;
        books.push_back(*book);
    }
    return BookUses(bits, books).areSafe();
}

} // namespace tamsy
