#pragma once

#include "Utils/FileURL.h"

#include <string_view>
#include <sys/mman.h>
#include <unistd.h>

namespace tamsy {

/// A file in memory.
class MemoryFile {
  public:
    MemoryFile() : descriptor_(::memfd_create("tags", MFD_CLOEXEC)) {}
    Q_DISABLE_COPY_MOVE(MemoryFile)
    ~MemoryFile() { ::close(descriptor_); }

    void append(std::string_view bytes) {
        while (!bytes.empty()) {
            const ssize_t written = ::write(descriptor_, bytes.data(), bytes.size());
            if (written <= 0)
                return;
            bytes.remove_prefix(static_cast<std::size_t>(written));
        }
    }

    void resize(off_t size) {
        if (::ftruncate(descriptor_, size) == 0)
            ::lseek(descriptor_, size, SEEK_SET);
    }

    [[nodiscard]] FileURL url() const {
        return FileURL::fromPath(
            QByteArray("/proc/self/fd/").append(QByteArray::number(descriptor_)));
    }

  private:
    int descriptor_;
};

} // namespace tamsy
