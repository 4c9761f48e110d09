#include "Playback/Miniaudio/AudioFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

namespace tamsy {

AudioFile::AudioFile(const QByteArray& path)
    // Without O_NONBLOCK, opening a pipe would wait for its writer.
    : descriptor_(::open(path.constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK)) {
    struct stat status {};
    if (descriptor_ < 0 || ::fstat(descriptor_, &status) != 0)
        error_ = errno;
    else if (S_ISDIR(status.st_mode))
        error_ = EISDIR;
    else if (!S_ISREG(status.st_mode))
        error_ = EINVAL;
    else
        size_ = static_cast<std::uint64_t>(status.st_size);
}

AudioFile::~AudioFile() {
    if (descriptor_ >= 0)
        ::close(descriptor_);
}

void AudioFile::expectRandomReads(bool isRandom) const {
    static_cast<void>(
        ::posix_fadvise(descriptor_, 0, 0, isRandom ? POSIX_FADV_RANDOM : POSIX_FADV_NORMAL));
}

std::span<const std::byte> AudioFile::read(std::uint64_t offset,
                                           std::span<std::byte> target) const {
    std::size_t filled = 0;
    while (filled < target.size()) {
        const ssize_t got = ::pread(descriptor_, target.data() + filled, target.size() - filled,
                                    static_cast<off_t>(offset + filled));
        if (got < 0 && errno == EINTR)
            continue;
        if (got <= 0)
            break;
        filled += static_cast<std::size_t>(got);
    }
    return target.first(filled);
}

} // namespace tamsy
