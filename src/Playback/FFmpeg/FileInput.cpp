#include "Playback/FFmpeg/FileInput.h"

#include "Formats/Id3v2Header.h"

extern "C" {
#include <libavformat/avio.h>
#include <libavutil/common.h>
#include <libavutil/error.h>
#include <libavutil/mem.h>
}

#include <algorithm>
#include <array>
#include <cerrno>
#include <string_view>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tamsy {
namespace {

/// The cost of a small read or a seek in bytes: a file of empty chunks makes the demuxer do
/// millions of them.
constexpr std::int64_t seekCost = 256;

constexpr int bufferSize = 64 * 1024; // bytes: about two seconds of compressed sound

} // namespace

std::unique_ptr<FileInput> FileInput::open(const char* path, const std::atomic<bool>& abandoned,
                                           const FileRange& range) {
    // Non-blocking: a pipe would block the thread until somebody writes.
    const int descriptor = ::open(path, O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
    if (descriptor < 0)
        return nullptr;
    std::unique_ptr<FileInput> input(new FileInput(descriptor, abandoned));
    struct stat status {};
    if (::fstat(descriptor, &status) != 0 || !S_ISREG(status.st_mode) || !input->context_)
        return nullptr;
    for (int tag = 0; tag < Id3v2Header::maxTags; ++tag)
        input->start_ += input->leadingTagSize();
    input->start_ += range.start;
    input->end_ = std::min(range.end - range.start, INT64_MAX - input->start_);
    return input;
}

FileInput::FileInput(int descriptor, const std::atomic<bool>& abandoned)
    : descriptor_(descriptor), abandoned_(abandoned) {
    auto* buffer = static_cast<unsigned char*>(av_malloc(bufferSize));
    if (buffer)
        context_ = avio_alloc_context(buffer, bufferSize, 0, this, &read, nullptr, &seek);
    if (!context_)
        av_free(buffer);
}

FileInput::~FileInput() {
    if (context_)
        av_freep(&context_->buffer);
    avio_context_free(&context_);
    ::close(descriptor_);
}

int FileInput::read(void* self, std::uint8_t* buffer, int size) {
    auto* input = static_cast<FileInput*>(self);
    if (input->abandoned_.load(std::memory_order_relaxed))
        return AVERROR_EXIT;
    if (input->allowed_ <= 0)
        return AVERROR_EOF;
    const ssize_t count = input->readOnce(input->offset_, buffer, static_cast<std::size_t>(size));
    if (count < 0)
        return AVERROR(errno);
    if (count == 0)
        return AVERROR_EOF;
    input->replaceHiddenNames({buffer, static_cast<std::size_t>(count)});
    input->offset_ += count;
    input->allowed_ -= count;
    return static_cast<int>(count);
}

/// `bytes` were read at the current offset.
void FileInput::replaceHiddenNames(std::span<std::uint8_t> bytes) const {
    constexpr std::string_view name = "free";
    for (const std::int64_t offset : hiddenNames_) {
        for (std::size_t i = 0; i < name.size(); ++i) {
            const std::int64_t at = offset - offset_ + static_cast<std::int64_t>(i);
            if (at >= 0 && at < std::ssize(bytes))
                bytes[static_cast<std::size_t>(at)] = static_cast<std::uint8_t>(name[i]);
        }
    }
}

/// Like `pread`, with offsets from the start of the container.
ssize_t FileInput::readOnce(std::int64_t offset, void* target, std::size_t size) const {
    if (offset >= end_)
        return 0;
    ssize_t count = 0;
    size = std::min(size, static_cast<std::size_t>(end_ - offset));
    do {
        count = ::pread(descriptor_, target, size, start_ + offset);
    } while (count < 0 && errno == EINTR);
    return count;
}

std::span<const std::byte> FileInput::readAt(std::int64_t offset,
                                             std::span<std::byte> target) const {
    std::size_t filled = 0;
    while (filled < target.size() && !abandoned_.load(std::memory_order_relaxed)) {
        const auto rest = target.subspan(filled);
        const ssize_t count =
            readOnce(offset + static_cast<std::int64_t>(filled), rest.data(), rest.size());
        if (count <= 0)
            break;
        filled += static_cast<std::size_t>(count);
    }
    return target.first(filled);
}

void FileInput::expectRandomReads(bool isRandom) const {
    static_cast<void>(
        ::posix_fadvise(descriptor_, 0, 0, isRandom ? POSIX_FADV_RANDOM : POSIX_FADV_NORMAL));
}

std::int64_t FileInput::seek(void* self, std::int64_t offset, int whence) {
    auto* input = static_cast<FileInput*>(self);
    input->allowed_ -= seekCost;
    switch (whence & ~AVSEEK_FORCE) {
    case AVSEEK_SIZE:
        return input->size();
    case SEEK_SET:
        break;
    case SEEK_CUR:
        offset = av_sat_add64(offset, input->offset_);
        break;
    case SEEK_END:
        offset = av_sat_add64(offset, input->size());
        break;
    default:
        return AVERROR(EINVAL);
    }
    if (offset < 0)
        return AVERROR(EINVAL);
    return input->offset_ = offset;
}

std::int64_t FileInput::size() const {
    struct stat status {};
    return ::fstat(descriptor_, &status) == 0
               ? std::clamp<std::int64_t>(status.st_size - start_, 0, end_)
               : AVERROR(errno);
}

/// The size of an ID3v2 tag at the start, 0 if there is none.
std::int64_t FileInput::leadingTagSize() const {
    std::array<std::byte, Id3v2Header::size> bytes{};
    const std::int64_t available = std::max<std::int64_t>(0, size());
    const auto header = parseId3v2Header(readAt(0, bytes), static_cast<std::uint64_t>(available));
    return header ? static_cast<std::int64_t>(header->tagSize()) : 0;
}

} // namespace tamsy
