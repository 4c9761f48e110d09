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

/// Bytes that can be read at any offset: a file, memory, or a packet in several pieces. Immutable;
/// any number of threads may read.
class ByteSource {
  public:
    ByteSource() = default;
    ByteSource(const ByteSource&) = delete;
    ByteSource& operator=(const ByteSource&) = delete;
    virtual ~ByteSource() = default;

    /// The size in bytes when the source was opened.
    [[nodiscard]] virtual std::uint64_t size() const = 0;

    /// Reads from `offset` into `target`. Returns the number of bytes read, fewer at the end.
    [[nodiscard]] virtual std::size_t read(std::uint64_t offset,
                                           std::span<std::byte> target) const = 0;

    /// Whether a read has failed, so that results may be incomplete.
    [[nodiscard]] virtual bool hasFailed() const { return false; }

    /// The `length` bytes at `offset`; empty if there are fewer, or if `length` exceeds 64 MiB,
    /// more than any value of a tag needs.
    [[nodiscard]] QByteArray copy(std::uint64_t offset, std::uint64_t length) const;
};

using SharedSource = std::shared_ptr<const ByteSource>;

/// Opens a regular file. It isn't mapped, so a file that shrinks meanwhile just reads short. Null
/// if it isn't a regular file or can't be opened; never blocks on a pipe.
[[nodiscard]] SharedSource openFileSource(const FileURL& url);

/// A source in memory.
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
