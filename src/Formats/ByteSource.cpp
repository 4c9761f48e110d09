#include "Formats/ByteSource.h"

#include "Platform/Storage/RegularFile.h"
#include "Platform/Threads/FileWatch.h"
#include "Platform/Threads/ReadPriority.h"
#include "Utils/FileURL.h"

#include <algorithm>
#include <atomic>
#include <cstring>
#include <utility>

namespace tamsy::media {

namespace {

constexpr std::uint64_t largestValue = std::uint64_t{64} * 1024 * 1024;

class FileSource : public ByteSource {
  public:
    explicit FileSource(RegularFile file)
        : file_(std::move(file)), size_(static_cast<std::uint64_t>(file_.status().st_size)) {}

    [[nodiscard]] std::uint64_t size() const override { return size_; }

    [[nodiscard]] bool hasFailed() const override {
        return hasFailed_.load(std::memory_order_relaxed);
    }

    [[nodiscard]] std::size_t read(std::uint64_t offset,
                                   std::span<std::byte> target) const override {
        std::size_t done = 0;
        while (done < target.size() && offset + done < size_) {
            const ssize_t got = readOnce(offset + done, target.subspan(done));
            if (got < 0)
                hasFailed_.store(true, std::memory_order_relaxed);
            if (got <= 0 || FileWatch::isCurrentAbandoned())
                break;
            done += static_cast<std::size_t>(got);
        }
        return done;
    }

  private:
    [[nodiscard]] ssize_t readOnce(std::uint64_t offset, std::span<std::byte> target) const {
        const std::size_t count = YieldingReads::waitForMusic(target.size());
        const FileWatch::Call call;
        return file_.read(offset, target.first(count));
    }

    RegularFile file_;
    std::uint64_t size_;
    mutable std::atomic<bool> hasFailed_{false};
};

} // namespace

QByteArray ByteSource::copy(std::uint64_t offset, std::uint64_t length) const {
    if (length > largestValue || offset > size() || length > size() - offset)
        return {};
    QByteArray bytes(static_cast<qsizetype>(length), Qt::Uninitialized);
    const std::size_t got = read(offset, std::as_writable_bytes(std::span(bytes)));
    return got == length ? bytes : QByteArray();
}

SharedSource openFileSource(const FileURL& url) {
    const FileWatch::Call call;
    RegularFile file(url.path());
    return file.isOpen() ? std::make_shared<FileSource>(std::move(file)) : nullptr;
}

std::size_t MemorySource::read(std::uint64_t offset, std::span<std::byte> target) const {
    if (offset >= size())
        return 0;
    const auto there = std::as_bytes(std::span(bytes_)).subspan(static_cast<std::size_t>(offset));
    const std::size_t count = std::min(there.size(), target.size());
    std::memcpy(target.data(), there.data(), count);
    return count;
}

} // namespace tamsy::media
