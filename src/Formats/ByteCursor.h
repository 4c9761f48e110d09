#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

namespace tamsy {

/// A bounds-checked read position in bytes that it doesn't own. A read past the end gives nothing
/// and leaves the position unchanged, so a wrong length can't lead outside.
class ByteCursor {
  public:
    using Bytes = std::span<const std::byte>;

    explicit ByteCursor(Bytes bytes) : bytes_(bytes) {}

    [[nodiscard]] std::size_t position() const { return position_; }
    [[nodiscard]] std::size_t remaining() const { return bytes_.size() - position_; }
    [[nodiscard]] bool atEnd() const { return remaining() == 0; }

    /// Moves to `position`, counted from the start. False, without moving, if that is past the end.
    [[nodiscard]] bool seek(std::uint64_t position) {
        if (position > bytes_.size())
            return false;
        position_ = static_cast<std::size_t>(position);
        return true;
    }

    /// Skips `count` bytes. False, without moving, if there are fewer.
    [[nodiscard]] bool skip(std::uint64_t count) { return readBytes(count).has_value(); }

    /// The next `count` bytes, without a copy; an empty span if `count` is 0.
    [[nodiscard]] std::optional<Bytes> readBytes(std::uint64_t count) {
        if (count > remaining())
            return std::nullopt;
        const Bytes found = bytes_.subspan(position_, static_cast<std::size_t>(count));
        position_ += found.size();
        return found;
    }

    [[nodiscard]] std::optional<std::uint8_t> readU8() { return read<std::uint8_t, 1, true>(); }
    [[nodiscard]] std::optional<std::uint16_t> readU16() { return read<std::uint16_t, 2, true>(); }
    [[nodiscard]] std::optional<std::uint32_t> readU24() { return read<std::uint32_t, 3, true>(); }
    [[nodiscard]] std::optional<std::uint32_t> readU32() { return read<std::uint32_t, 4, true>(); }
    [[nodiscard]] std::optional<std::uint64_t> readU64() { return read<std::uint64_t, 8, true>(); }
    [[nodiscard]] std::optional<std::uint16_t> readU16LE() {
        return read<std::uint16_t, 2, false>();
    }
    [[nodiscard]] std::optional<std::uint32_t> readU32LE() {
        return read<std::uint32_t, 4, false>();
    }
    [[nodiscard]] std::optional<std::uint64_t> readU64LE() {
        return read<std::uint64_t, 8, false>();
    }

  private:
    template <typename Integer, std::size_t Size, bool BigEndian>
    std::optional<Integer> read() {
        const auto bytes = readBytes(Size);
        if (!bytes)
            return std::nullopt;
        std::uint64_t value = 0;
        for (std::size_t i = 0; i < Size; ++i)
            value = (value << 8U) |
                    std::to_integer<std::uint64_t>((*bytes)[BigEndian ? i : Size - 1 - i]);
        return static_cast<Integer>(value);
    }

    Bytes bytes_;
    std::size_t position_ = 0;
};

} // namespace tamsy
