#pragma once

#include <QByteArray>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>

namespace tamsy {
class FileURL;
}

namespace tamsy::media {

/// Bytes that can be read at any place: a file, a part of memory, or a packet that lies in pieces.
/// Immutable; any number of threads may read.
class ByteSource {
  public:
    ByteSource() = default;
    ByteSource(const ByteSource&) = delete;
    ByteSource& operator=(const ByteSource&) = delete;
    virtual ~ByteSource() = default;

    /// Bytes in all, as it was when the source was opened.
    [[nodiscard]] virtual std::uint64_t size() const = 0;

    /// Reads what stands at `offset` into `target`; gives the bytes read, fewer at the end.
    [[nodiscard]] virtual std::size_t read(std::uint64_t offset,
                                           std::span<std::byte> target) const = 0;

    /// Whether a read has failed, so that what was found may not be all there is.
    [[nodiscard]] virtual bool hasFailed() const { return false; }

    /// The `length` bytes at `offset`; empty if they aren't all there or are more than a value of
    /// a tag may reasonably have (64 MiB).
    [[nodiscard]] QByteArray copy(std::uint64_t offset, std::uint64_t length) const;
};

using SharedSource = std::shared_ptr<const ByteSource>;

/// Opens a regular file for reading by position. Nothing is mapped, so a file that shrinks
/// meanwhile only reads short. Null if it is no regular file or can't be opened; a fifo doesn't
/// block.
[[nodiscard]] SharedSource openFileSource(const FileURL& url);

/// Bytes in memory.
class MemorySource : public ByteSource {
  public:
    explicit MemorySource(QByteArray bytes) : bytes_(std::move(bytes)) {}

    [[nodiscard]] std::uint64_t size() const override {
        return static_cast<std::uint64_t>(bytes_.size());
    }
    [[nodiscard]] std::size_t read(std::uint64_t offset,
                                   std::span<std::byte> target) const override;

  private:
    QByteArray bytes_;
};

} // namespace tamsy::media
