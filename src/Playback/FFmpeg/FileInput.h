#pragma once

#include <sys/types.h>

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <utility>
#include <vector>

struct AVIOContext;

namespace tamsy {

/// A part of a file, in bytes from the start of the container.
struct FileRange {
    std::int64_t start = 0;
    std::int64_t end = INT64_MAX;
};

/// A local file, the demuxer's only source of bytes. It is opened by its path in bytes, so that no
/// path is taken for a URL. Leading ID3v2 tags are skipped: one with a large picture would hide the
/// container from the demuxer.
class FileInput {
  public:
    /// Opens the regular file at `path` (bytes), or a part of it; null for anything else. Reads
    /// fail once `abandoned` is true; it must outlive this.
    [[nodiscard]] static std::unique_ptr<FileInput>
    open(const char* path, const std::atomic<bool>& abandoned, const FileRange& range = {});
    FileInput(const FileInput&) = delete;
    FileInput& operator=(const FileInput&) = delete;
    ~FileInput();

    /// Limits how many bytes the demuxer may read from now on; after that it gets the end of the
    /// file.
    void allow(std::int64_t bytes) { allowed_ = bytes; }

    /// Reads from `offset` until `target` is full or the file ends, regardless of `allow`. Returns
    /// the part of `target` that was filled.
    [[nodiscard]] std::span<const std::byte> readAt(std::int64_t offset,
                                                    std::span<std::byte> target) const;

    /// Replaces the four bytes at each of `offsets` by "free", the name of unused space in
    /// containers, when the demuxer reads them.
    void hideNames(std::vector<std::int64_t> offsets) { hiddenNames_ = std::move(offsets); }

    /// The size in bytes; negative if unknown.
    [[nodiscard]] std::int64_t size() const;

    /// Tells the system whether reads are random, which turns read-ahead off. Initially they count
    /// as sequential.
    void expectRandomReads(bool isRandom) const;

    /// What the demuxer reads from; owned by this.
    [[nodiscard]] AVIOContext* context() const { return context_; }

  private:
    FileInput(int descriptor, const std::atomic<bool>& abandoned);
    static int read(void* self, std::uint8_t* buffer, int size);
    static std::int64_t seek(void* self, std::int64_t offset, int whence);
    void replaceHiddenNames(std::span<std::uint8_t> bytes) const;
    [[nodiscard]] ssize_t readOnce(std::int64_t offset, void* target, std::size_t size) const;
    [[nodiscard]] std::int64_t leadingTagSize() const;

    int descriptor_;
    const std::atomic<bool>& abandoned_;
    std::int64_t start_ = 0;           // bytes skipped at the start
    std::int64_t end_ = INT64_MAX;     // bytes from `start_`
    std::int64_t offset_ = 0;          // of the next read, in bytes from `start_`
    std::int64_t allowed_ = INT64_MAX; // bytes
    std::vector<std::int64_t> hiddenNames_;
    AVIOContext* context_ = nullptr;
};

} // namespace tamsy
