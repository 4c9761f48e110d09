#include "Services/Library/JsonWriter.h"

#include "Platform/Storage/LargeMemory.h"
#include "Services/Library/UuidText.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstring>

namespace tamsy {
namespace {

constexpr std::uint64_t everyByte(unsigned char value) {
    return 0x0101010101010101U * value;
}

constexpr bool mustBeEscaped(unsigned char c) {
    return c < 0x20 || c == '"' || c == '\\';
}

/// Tests eight bytes at once (SWAR) for quotes, backslashes and control characters.
constexpr bool mustEscapeAny(std::uint64_t bytes) {
    const std::uint64_t quote = bytes ^ everyByte('"');
    const std::uint64_t backslash = bytes ^ everyByte('\\');
    return (((bytes - everyByte(0x20)) & ~bytes) | ((quote - everyByte(1)) & ~quote) |
            ((backslash - everyByte(1)) & ~backslash)) &
           everyByte(0x80);
}

char* writeEscaped(char* out, char c) {
    constexpr std::string_view digits = "0123456789ABCDEF";
    *out++ = '\\';
    if (c == '"' || c == '\\') {
        *out++ = c;
        return out;
    }
    const auto byte = static_cast<unsigned char>(c);
    for (const char part : {'u', '0', '0', digits[byte >> 4U], digits[byte & 0x0FU]})
        *out++ = part;
    return out;
}

} // namespace

JsonWriter::JsonWriter(qsizetype expectedSize) : buffer_(expectedSize, Qt::Uninitialized) {
    preferLargePages(buffer_.constData(), static_cast<std::size_t>(buffer_.size()));
}

char* JsonWriter::room(std::size_t size) {
    const qsizetype needed = size_ + static_cast<qsizetype>(size);
    if (needed > buffer_.size())
        buffer_.resize(std::max(needed, buffer_.size() + buffer_.size() / 2));
    return buffer_.data() + size_;
}

void JsonWriter::raw(std::string_view json) {
    finishedAt(std::copy(json.begin(), json.end(), room(json.size())));
}

void JsonWriter::text(std::string_view utf8) {
    constexpr std::size_t maxEscapeSize = 6;
    char* out = room(utf8.size() * maxEscapeSize + 2);
    *out++ = '"';
    std::size_t i = 0;
    while (i < utf8.size()) {
        std::uint64_t eight = 0;
        if (i + sizeof eight <= utf8.size()) {
            std::memcpy(&eight, utf8.data() + i, sizeof eight);
            if (!mustEscapeAny(eight)) {
                std::memcpy(out, &eight, sizeof eight);
                out += sizeof eight;
                i += sizeof eight;
                continue;
            }
        }
        const char c = utf8[i++];
        if (mustBeEscaped(static_cast<unsigned char>(c)))
            out = writeEscaped(out, c);
        else
            *out++ = c;
    }
    *out++ = '"';
    finishedAt(out);
}

void JsonWriter::number(double value) {
    // Many parsers, ours included, reject integers of more than 64 bits unless they have an
    // exponent.
    constexpr double maxExactInteger = 9007199254740992.0; // 2^53
    if (!std::isfinite(value)) {
        isInvalid_ = true;
        return;
    }
    constexpr std::size_t maxNumberSize = 32;
    char* const out = room(maxNumberSize);
    const auto form = std::abs(value) < maxExactInteger ? std::chars_format::general
                                                        : std::chars_format::scientific;
    finishedAt(std::to_chars(out, out + maxNumberSize, value, form).ptr);
}

void JsonWriter::uuid(const QUuid& id) {
    char* const out = room(uuidTextSize + 2);
    out[0] = '"';
    writeUuidText(id, std::span<char, uuidTextSize>(out + 1, uuidTextSize));
    out[uuidTextSize + 1] = '"';
    finishedAt(out + uuidTextSize + 2);
}

std::optional<QByteArray> JsonWriter::take() {
    buffer_.truncate(size_);
    size_ = 0;
    QByteArray text = std::exchange(buffer_, {});
    return isInvalid_ ? std::nullopt : std::optional(std::move(text));
}

} // namespace tamsy
