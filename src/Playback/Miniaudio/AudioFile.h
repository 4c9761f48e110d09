#pragma once

#include <QByteArray>

#include <cstddef>
#include <cstdint>
#include <span>

namespace tamsy {

/// A regular file that is examined before a decoder opens it. Anything else (a folder, a pipe
/// without a writer, a device) fails to open without blocking.
class AudioFile {
  public:
    /// `path` in bytes.
    explicit AudioFile(const QByteArray& path);
    ~AudioFile();
    AudioFile(const AudioFile&) = delete;
    AudioFile& operator=(const AudioFile&) = delete;

    /// 0 if the file is open, else the system's error number.
    [[nodiscard]] int error() const { return error_; }

    /// The size in bytes; 0 if it isn't open.
    [[nodiscard]] std::uint64_t size() const { return size_; }

    /// Reads from `offset` until `target` is full or the file ends.
    /// @return the part of `target` that was filled.
    [[nodiscard]] std::span<const std::byte> read(std::uint64_t offset,
                                                  std::span<std::byte> target) const;

    /// Tells the system whether reads are random, which turns read-ahead off. Initially they count
    /// as sequential.
    void expectRandomReads(bool isRandom) const;

  private:
    int descriptor_ = -1;
    int error_ = 0;
    std::uint64_t size_ = 0;
};

} // namespace tamsy
