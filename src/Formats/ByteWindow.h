#pragma once

#include "Formats/ByteCursor.h"
#include "Formats/ByteSource.h"

#include <memory>
#include <string_view>

namespace tamsy::media {

using Bytes = ByteCursor::Bytes;

/// A window over a source that moves with the reader, so that a tag's many small reads become a few
/// system calls. The number of these is limited: after that every read gives nothing, which bounds
/// the time that a hostile file can cost.
class ByteWindow {
  public:
    static constexpr std::size_t defaultCapacity = 8192;
    static constexpr unsigned maxFetches = 1024;

    explicit ByteWindow(const ByteSource& source, std::size_t capacity = defaultCapacity);

    [[nodiscard]] std::uint64_t size() const { return source_.size(); }

    /// The `length` bytes at `offset`, valid until the next read. Empty if there are fewer, if they
    /// exceed the window's capacity, or if the limit is used up. A miss fetches up to `readAhead`
    /// bytes.
    [[nodiscard]] Bytes read(std::uint64_t offset, std::size_t length,
                             std::size_t readAhead = defaultCapacity);

    /// As many bytes at `offset` as there are, up to `length` and the window's capacity.
    [[nodiscard]] Bytes readUpTo(std::uint64_t offset, std::size_t length);

    /// A copy of the `length` bytes at `offset`, which may exceed the window's capacity.
    [[nodiscard]] QByteArray copy(std::uint64_t offset, std::uint64_t length);

    /// Whether the bytes at `offset` are `text`.
    [[nodiscard]] bool matches(std::uint64_t offset, std::string_view text);

  private:
    void fetch(std::uint64_t offset, std::size_t length);

    const ByteSource& source_;
    std::size_t capacity_;
    std::unique_ptr<std::byte[]> buffer_;
    std::uint64_t start_ = 0;
    std::size_t filled_ = 0;
    unsigned fetches_ = 0;
};

/// A view of `bytes` as text.
[[nodiscard]] inline std::string_view asText(Bytes bytes) {
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

} // namespace tamsy::media
