#pragma once

#include <QByteArray>

#include <sys/types.h>

#include <cstddef>
#include <cstdint>
#include <span>

namespace tamsy {

/// A regular file opened for a look at its bytes before a decoder gets it. Anything else (a folder,
/// a pipe that nobody writes to, a device) doesn't open, and nothing of it waits.
class AudioFile {
  public:
    /// `path` in bytes.
    explicit AudioFile(const QByteArray& path);
    ~AudioFile();
    AudioFile(const AudioFile&) = delete;
    AudioFile& operator=(const AudioFile&) = delete;

    /// 0 if the file is open, else the system's error number.
    [[nodiscard]] int error() const { return error_; }

    /// In bytes; 0 if it isn't open.
    [[nodiscard]] std::uint64_t size() const { return size_; }

    /// Reads from `offset`, as much as `target` takes or the file holds.
    /// @return the part of `target` that was filled.
    [[nodiscard]] std::span<const std::byte> read(std::uint64_t offset,
                                                  std::span<std::byte> target) const;

    /// Tells the system whether reads jump about: it then fetches nothing beyond them. At first it
    /// takes them for sequential.
    void expectRandomReads(bool isRandom) const;

  private:
    int descriptor_ = -1;
    int error_ = 0;
    dev_t device_ = 0;
    std::uint64_t size_ = 0;
};

} // namespace tamsy
