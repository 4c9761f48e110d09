#pragma once

#include <QByteArray>

#include <fcntl.h>
#include <unistd.h>

#include <utility>

namespace tamsy {

/// Owns a file descriptor. Move-only; empty if default-constructed.
class FileDescriptor {
  public:
    FileDescriptor() = default;
    explicit FileDescriptor(int number) : number_(number) {}
    FileDescriptor(FileDescriptor&& other) noexcept : number_(other.release()) {}
    FileDescriptor& operator=(FileDescriptor&& other) noexcept {
        if (this != &other) {
            close();
            number_ = other.release();
        }
        return *this;
    }
    FileDescriptor(const FileDescriptor&) = delete;
    FileDescriptor& operator=(const FileDescriptor&) = delete;
    ~FileDescriptor() { close(); }

    [[nodiscard]] bool isOpen() const { return number_ >= 0; }
    [[nodiscard]] int number() const { return number_; }

    /// Passes ownership to the caller.
    [[nodiscard]] int release() { return std::exchange(number_, -1); }

    void close() {
        if (const int number = release(); number >= 0)
            ::close(number);
    }

  private:
    int number_ = -1;
};

/// Opens a directory for reading; not open if `path`, in bytes, is something else.
[[nodiscard]] inline FileDescriptor openDirectory(const QByteArray& path, int extraFlags = 0) {
    return FileDescriptor(
        ::open(path.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC | extraFlags));
}

} // namespace tamsy
