#include "Utils/TextTrimming.h"

#include <QChar>

namespace tamsy {
namespace {

template <typename Predicate>
QStringView trimmed(QStringView text, Predicate drops) {
    while (!text.isEmpty() && drops(text.front().unicode()))
        text = text.sliced(1);
    while (!text.isEmpty() && drops(text.back().unicode()))
        text.chop(1);
    return text;
}

} // namespace

// All space separators and newlines are in the Basic Multilingual Plane, so testing single UTF-16
// code units is enough.

bool isWhitespace(char32_t character) {
    return character == U'\t' || QChar::category(character) == QChar::Separator_Space;
}

bool isNewline(char32_t character) {
    return (character >= 0x0A && character <= 0x0D) || character == 0x85 || character == 0x2028 ||
           character == 0x2029;
}

QStringView trimmedOfWhitespace(QStringView text) {
    return trimmed(text, [](char32_t c) { return isWhitespace(c); });
}

QStringView trimmedOfWhitespaceAndNewlines(QStringView text) {
    return trimmed(text, [](char32_t c) { return isWhitespace(c) || isNewline(c); });
}

} // namespace tamsy
