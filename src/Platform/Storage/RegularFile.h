#pragma once

#include "Platform/Storage/FileDescriptor.h"

#include <QByteArray>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <span>

namespace tamsy {

/// A regular file open for reading. Anything else (a directory, a device, a pipe without a writer)
/// fails to open without blocking. Header-only, so that the media module can use it too.
class RegularFile {
  public:
    /// `path` in bytes.
    explicit RegularFile(const char* path)
        : descriptor_(::open(path, O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY)) {
        if (!descriptor_.isOpen() || ::fstat(descriptor_.number(), &status_) != 0)
            error_ = errno;
        else if (!S_ISREG(status_.st_mode))
            error_ = S_ISDIR(status_.st_mode) ? EISDIR : EINVAL;
        if (error_ != 0)
            descriptor_.close();
    }
    explicit RegularFile(const QByteArray& path) : RegularFile(path.constData()) {}

    [[nodiscard]] bool isOpen() const { return error_ == 0; }

    /// 0 if the file is open, else the system's error number.
    [[nodiscard]] int error() const { return error_; }

    /// The file's status when it was opened.
    [[nodiscard]] const struct stat& status() const { return status_; }

    [[nodiscard]] int descriptor() const { return descriptor_.number(); }

    /// Reads from `offset` as `pread` does, but retries after a signal: the number of bytes read, 0
    /// at the end, or -1 and errno. Any thread.
    [[nodiscard]] ssize_t read(std::uint64_t offset, std::span<std::byte> target) const {
        ssize_t count = 0;
        do
            count = ::pread(descriptor_.number(), target.data(), target.size(),
                            static_cast<off_t>(offset));
        while (count < 0 && errno == EINTR);
        return count;
    }

  private:
    FileDescriptor descriptor_;
    struct stat status_ {};
    int error_ = 0;
};

} // namespace tamsy
