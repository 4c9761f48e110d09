#include "Formats/ApeTag.h"

#include <algorithm>
#include <string_view>

namespace tamsy {
namespace {

constexpr std::uint32_t versionOfUtf8 = 2000;

std::string_view asText(ByteCursor::Bytes bytes) {
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

} // namespace

std::optional<ApeFooter> parseApeFooter(ByteCursor::Bytes bytes) {
    ByteCursor cursor(bytes);
    const auto signature = cursor.readBytes(8);
    if (!signature || asText(*signature) != "APETAGEX")
        return std::nullopt;
    const std::uint32_t version = cursor.readU32LE().value_or(0);
    const std::uint32_t size = cursor.readU32LE().value_or(0); // footer included
    const auto items = cursor.readU32LE();
    if (!items || size < ApeFooter::size)
        return std::nullopt;
    return ApeFooter{
        .itemBytes = size - ApeFooter::size, .items = *items, .isUtf8 = version >= versionOfUtf8};
}

std::optional<ApeItem> parseApeItem(ByteCursor::Bytes bytes) {
    constexpr std::uint32_t kindMask = 6; // text, binary, link
    ByteCursor cursor(bytes);
    const auto size = cursor.readU32LE();
    const auto flags = cursor.readU32LE();
    if (!size || !flags)
        return std::nullopt;
    const std::string_view rest = asText(bytes).substr(cursor.position());
    const std::size_t keyLength = rest.find('\0');
    const auto isKeyLetter = [](char letter) { return letter >= 0x20 && letter <= 0x7E; };
    if (keyLength == std::string_view::npos || keyLength < 2 ||
        !std::ranges::all_of(rest.substr(0, keyLength), isKeyLetter))
        return std::nullopt;
    return ApeItem{.key = QByteArray(rest.data(), static_cast<qsizetype>(keyLength)),
                   .headerSize = cursor.position() + keyLength + 1,
                   .valueSize = *size,
                   .isText = (*flags & kindMask) == 0};
}

} // namespace tamsy
