#include "Formats/ByteWindow.h"

#include <algorithm>

namespace tamsy::media {

ByteWindow::ByteWindow(const ByteSource& source, std::size_t capacity)
    : source_(source),
      capacity_(capacity),
      buffer_(std::make_unique_for_overwrite<std::byte[]>(capacity)) {}

Bytes ByteWindow::read(std::uint64_t offset, std::size_t length, std::size_t readAhead) {
    if (length > capacity_ || offset > size() || length > size() - offset)
        return {};
    if (offset < start_ || offset + length > start_ + filled_)
        fetch(offset, std::min(std::max(length, readAhead), capacity_));
    if (offset < start_ || offset + length > start_ + filled_)
        return {};
    return {buffer_.get() + (offset - start_), length};
}

Bytes ByteWindow::readUpTo(std::uint64_t offset, std::size_t length) {
    if (offset >= size())
        return {};
    const std::uint64_t there = size() - offset;
    return read(offset,
                static_cast<std::size_t>(std::min<std::uint64_t>({length, capacity_, there})));
}

QByteArray ByteWindow::copy(std::uint64_t offset, std::uint64_t length) {
    if (length > capacity_)
        return source_.copy(offset, length);
    const Bytes bytes = read(offset, static_cast<std::size_t>(length));
    return {reinterpret_cast<const char*>(bytes.data()), static_cast<qsizetype>(bytes.size())};
}

bool ByteWindow::matches(std::uint64_t offset, std::string_view text) {
    return asText(read(offset, text.size())) == text;
}

void ByteWindow::fetch(std::uint64_t offset, std::size_t length) {
    if (fetches_ == maxFetches)
        return;
    ++fetches_;
    start_ = offset;
    filled_ = source_.read(offset, {buffer_.get(), length});
}

} // namespace tamsy::media
