#pragma once

#include "Formats/ByteCursor.h"

#include <cstdint>
#include <optional>
#include <utility>

namespace tamsy {

/// Steps through the comments of a Vorbis comment block (xiph.org): a vendor's name, a count, and
/// as many texts, each preceded by its length. `ReadLength` returns the little-endian 32-bit number
/// at an offset, or nothing.
template <typename ReadLength>
class VorbisCommentWalk {
  public:
    struct Comment {
        std::uint64_t begin = 0;
        std::uint64_t end = 0;
    };

    /// The block fills the bytes from `begin` to `end`.
    VorbisCommentWalk(ReadLength readLength, std::uint64_t begin, std::uint64_t end)
        : readLength_(std::move(readLength)), position_(begin), end_(end) {
        const auto vendor = readText();
        const auto count =
            vendor && end_ - position_ >= lengthSize ? readLength_(position_) : std::nullopt;
        hasHeader_ = count.has_value();
        count_ = left_ = count.value_or(0);
        position_ += hasHeader_ ? lengthSize : 0;
    }

    /// The number of comments that the block states.
    [[nodiscard]] std::uint32_t count() const { return count_; }

    /// The next comment; nothing after the last one, or if one exceeds the block.
    [[nodiscard]] std::optional<Comment> next() {
        const auto comment = left_ > 0 ? readText() : std::nullopt;
        if (comment)
            --left_;
        return comment;
    }

    /// Whether the block is complete and all its comments have been returned.
    [[nodiscard]] bool isComplete() const { return hasHeader_ && left_ == 0; }

    /// The offset of what follows.
    [[nodiscard]] std::uint64_t position() const { return position_; }

  private:
    static constexpr std::uint64_t lengthSize = 4;

    std::optional<Comment> readText() {
        if (position_ > end_ || end_ - position_ < lengthSize)
            return std::nullopt;
        const auto length = readLength_(position_);
        if (!length || *length > end_ - position_ - lengthSize)
            return std::nullopt;
        const std::uint64_t begin = position_ + lengthSize;
        position_ = begin + *length;
        return Comment{.begin = begin, .end = position_};
    }

    ReadLength readLength_;
    std::uint64_t position_;
    std::uint64_t end_;
    bool hasHeader_ = false;
    std::uint32_t count_ = 0;
    std::uint32_t left_ = 0;
};

/// A walk through a block in memory, which must outlive it.
[[nodiscard]] inline auto walkVorbisComments(ByteCursor::Bytes block) {
    const auto readLength = [block](std::uint64_t offset) {
        ByteCursor cursor(block);
        return cursor.seek(offset) ? cursor.readU32LE() : std::nullopt;
    };
    return VorbisCommentWalk(readLength, 0, block.size());
}

} // namespace tamsy
