#pragma once

#include "Platform/Storage/FileDescriptor.h"

#include <dirent.h>

#include <memory>
#include <string_view>

namespace tamsy {

/// The entries of an open directory, in the file system's order.
class DirectoryStream {
  public:
    /// Takes ownership of `directory`. One that isn't open has no entries.
    explicit DirectoryStream(FileDescriptor directory)
        : stream_(directory.isOpen() ? ::fdopendir(directory.number()) : nullptr) {
        if (stream_)
            (void)directory.release();
    }

    [[nodiscard]] bool isOpen() const { return stream_ != nullptr; }
    [[nodiscard]] int descriptor() const { return ::dirfd(stream_.get()); }

    /// The next entry other than "." and "..", valid until the next call; null at the end or after
    /// an error.
    [[nodiscard]] const dirent* next() {
        while (const dirent* entry = stream_ ? ::readdir(stream_.get()) : nullptr) {
            const std::string_view name = entry->d_name;
            if (name != "." && name != "..")
                return entry;
        }
        return nullptr;
    }

  private:
    struct Close {
        void operator()(DIR* stream) const { ::closedir(stream); }
    };
    std::unique_ptr<DIR, Close> stream_;
};

} // namespace tamsy
