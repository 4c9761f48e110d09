#pragma once

#include "Formats/ByteSource.h"

#include <mutex>
#include <vector>

namespace tamsy::media {

/// Removes the zero bytes that ID3 inserts after 0xFF, so that a tag contains no MPEG sync word.
[[nodiscard]] QByteArray undoUnsynchronisation(QByteArray bytes);

/// A whole tag without those bytes. An offset can only be found by reading from the front: forward
/// reads take one pass over the tag, a backward read starts at the previous mark. `size` is that of
/// the tag in the file; reads at the end are short by the number of removed bytes.
class UnsynchronisedSource : public ByteSource {
  public:
    UnsynchronisedSource(SharedSource file, std::uint64_t offset, std::uint64_t length)
        : file_(std::move(file)), offset_(offset), length_(length) {}

    [[nodiscard]] std::uint64_t size() const override { return length_; }
    [[nodiscard]] std::size_t read(std::uint64_t offset,
                                   std::span<std::byte> target) const override;

  private:
    /// A position of the pass over the tag.
    struct Position {
        std::uint64_t raw = 0;
        std::uint64_t plain = 0;
        bool followsMark = false; ///< the previous byte was 0xFF
    };

    SharedSource file_;
    std::uint64_t offset_;
    std::uint64_t length_;
    mutable std::mutex mutex_; // guards everything below
    mutable Position position_;
    mutable std::vector<Position> marks_{Position()}; ///< positions at regular steps
};

} // namespace tamsy::media
