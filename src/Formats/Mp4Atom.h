#pragma once

#include "Formats/ByteWindow.h"

#include <string_view>

namespace tamsy::media {

/// An atom (box) of an MPEG-4 file: its type and the offsets where its body begins and ends.
struct Mp4Atom {
    std::uint32_t type = 0;
    std::uint64_t body = 0;
    std::uint64_t end = 0;

    [[nodiscard]] bool is(std::string_view name) const {
        std::uint32_t value = 0;
        for (const char letter : name)
            value = value << 8U | static_cast<unsigned char>(letter);
        return type == value;
    }
    [[nodiscard]] std::uint64_t size() const { return end - body; }
};

/// Steps through sibling atoms. All walks in a file share one limit of atoms, which bounds the time
/// that a hostile file can cost.
class Mp4AtomWalk {
  public:
    Mp4AtomWalk(ByteWindow& window, int& atomsLeft, std::uint64_t begin, std::uint64_t end)
        : window_(window), atomsLeft_(atomsLeft), position_(begin), end_(end) {}

    /// The next atom; nothing at the end or after an impossible size. An atom that runs past the
    /// end is truncated.
    [[nodiscard]] std::optional<Mp4Atom> next() {
        if (position_ >= end_ || atomsLeft_-- <= 0)
            return std::nullopt;
        ByteCursor cursor(window_.readUpTo(position_, 16));
        std::uint64_t size = cursor.readU32().value_or(0);
        const auto type = cursor.readU32();
        if (size == 1)
            size = cursor.readU64().value_or(0);
        else if (size == 0)
            size = end_ - position_;
        if (!type || size < cursor.position())
            return std::nullopt;
        const Mp4Atom atom{.type = *type,
                           .body = position_ + cursor.position(),
                           .end = position_ + std::min(size, end_ - position_)};
        position_ = atom.end;
        return atom.body <= atom.end ? std::optional(atom) : std::nullopt;
    }

  private:
    ByteWindow& window_;
    int& atomsLeft_;
    std::uint64_t position_;
    std::uint64_t end_;
};

} // namespace tamsy::media
