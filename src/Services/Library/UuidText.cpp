#include "Services/Library/UuidText.h"

#include <QtEndian>

#include <array>

namespace tamsy {
namespace {

using UuidBytes = std::array<unsigned char, 16>;

constexpr bool isHyphenPosition(std::size_t position) {
    return position == 8 || position == 13 || position == 18 || position == 23;
}

constexpr auto digitValues = [] {
    std::array<signed char, 256> values{};
    values.fill(-1);
    for (signed char i = 0; i < 10; ++i)
        values[static_cast<std::size_t>('0' + i)] = i;
    for (signed char i = 0; i < 6; ++i) {
        values[static_cast<std::size_t>('A' + i)] = static_cast<signed char>(10 + i);
        values[static_cast<std::size_t>('a' + i)] = static_cast<signed char>(10 + i);
    }
    return values;
}();

int digitValue(char c) {
    return digitValues[static_cast<unsigned char>(c)];
}

UuidBytes bytesOf(const QUuid& id) {
    UuidBytes bytes{};
    qToBigEndian(id.data1, bytes.data());
    qToBigEndian(id.data2, bytes.data() + 4);
    qToBigEndian(id.data3, bytes.data() + 6);
    std::copy(std::begin(id.data4), std::end(id.data4), bytes.data() + 8);
    return bytes;
}

QUuid uuidOf(const UuidBytes& bytes) {
    QUuid id;
    id.data1 = qFromBigEndian<quint32>(bytes.data());
    id.data2 = qFromBigEndian<quint16>(bytes.data() + 4);
    id.data3 = qFromBigEndian<quint16>(bytes.data() + 6);
    std::copy(bytes.data() + 8, bytes.data() + 16, std::begin(id.data4));
    return id;
}

} // namespace

void writeUuidText(const QUuid& id, std::span<char, uuidTextSize> out) {
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::size_t position = 0;
    for (const unsigned char byte : bytesOf(id)) {
        if (isHyphenPosition(position))
            out[position++] = '-';
        out[position++] = digits[byte >> 4U];
        out[position++] = digits[byte & 0x0FU];
    }
}

std::optional<QUuid> readUuidText(std::string_view text) {
    if (text.size() != uuidTextSize)
        return std::nullopt;
    UuidBytes bytes{};
    std::size_t position = 0;
    for (unsigned char& byte : bytes) {
        if (isHyphenPosition(position) && text[position++] != '-')
            return std::nullopt;
        const int high = digitValue(text[position]);
        const int low = digitValue(text[position + 1]);
        if (high < 0 || low < 0)
            return std::nullopt;
        byte = static_cast<unsigned char>(high * 16 + low);
        position += 2;
    }
    return uuidOf(bytes);
}

} // namespace tamsy
