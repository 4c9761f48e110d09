#include "Formats/Unsynchronisation.h"

#include <algorithm>
#include <array>
#include <iterator>

namespace tamsy::media {

namespace {

constexpr std::byte mark{0xFF};
constexpr std::uint64_t markStep = std::uint64_t{16} * 1024;

} // namespace

QByteArray undoUnsynchronisation(QByteArray bytes) {
    char* target = bytes.data();
    bool followsMark = false;
    for (const char byte : std::as_const(bytes)) {
        const bool isInserted = followsMark && byte == 0;
        followsMark = byte == '\xFF';
        *target = byte;
        target += isInserted ? 0 : 1;
    }
    bytes.truncate(target - bytes.constData());
    return bytes;
}

std::size_t UnsynchronisedSource::read(std::uint64_t offset, std::span<std::byte> target) const {
    const std::scoped_lock lock(mutex_);
    if (offset < position_.plain)
        position_ = *std::prev(std::ranges::upper_bound(marks_, offset, {}, &Position::plain));
    std::array<std::byte, 4096> raw; // NOLINT(cppcoreguidelines-pro-type-member-init)
    std::size_t done = 0;
    while (done < target.size()) {
        const auto wanted =
            static_cast<std::size_t>(std::min<std::uint64_t>(raw.size(), length_ - position_.raw));
        const std::size_t got = file_->read(offset_ + position_.raw, std::span(raw).first(wanted));
        std::size_t used = 0;
        for (; used < got && done < target.size(); ++used) {
            const bool isInserted = position_.followsMark && raw[used] == std::byte{0};
            position_.followsMark = raw[used] == mark;
            if (isInserted)
                continue;
            if (position_.plain >= offset)
                target[done++] = raw[used];
            ++position_.plain;
        }
        position_.raw += used;
        if (position_.raw >= marks_.size() * markStep)
            marks_.push_back(position_);
        if (got == 0)
            break;
    }
    return done;
}

} // namespace tamsy::media
