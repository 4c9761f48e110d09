#pragma once

#include "Formats/ByteSource.h"

#include <mutex>
#include <vector>

namespace tamsy::media {

/// `bytes` without the zero byte that ID3 puts behind a 0xFF so that it can't be taken for sound.
[[nodiscard]] QByteArray undoUnsynchronisation(QByteArray bytes);

/// A whole tag without those bytes. Where one of its bytes stands is known only by reading from the
/// front, so reads that go forward cost one pass over the tag; a read that goes back starts at the
/// mark before it. Its size is that of the bytes in the file; it reads short by what was taken out.
class UnsynchronisedSource : public ByteSource {
  public:
    UnsynchronisedSource(SharedSource file, std::uint64_t offset, std::uint64_t length)
        : file_(std::move(file)), offset_(offset), length_(length) {}

    [[nodiscard]] std::uint64_t size() const override { return length_; }
    [[nodiscard]] std::size_t read(std::uint64_t offset,
                                   std::span<std::byte> target) const override;

  private:
    /// How far the pass over the tag has come.
    struct Place {
        std::uint64_t raw = 0;
        std::uint64_t plain = 0;
        bool isBehindMark = false; ///< the byte before was 0xFF
    };

    SharedSource file_;
    std::uint64_t offset_;
    std::uint64_t length_;
    mutable std::mutex mutex_; // guards the places
    mutable Place place_;
    mutable std::vector<Place> marks_{Place()}; ///< where the pass has been, in even steps
};

} // namespace tamsy::media
