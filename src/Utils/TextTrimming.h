#pragma once

#include <QString>
#include <QStringView>

namespace tamsy {

/// White space: the Unicode space separators (category Zs) and the tab, but no newline.
[[nodiscard]] bool isWhitespace(char32_t character);

/// The seven newline characters: U+000A to U+000D, U+0085, U+2028 and U+2029.
[[nodiscard]] bool isNewline(char32_t character);

/// `text` without the white space at both ends. A view into it.
[[nodiscard]] QStringView trimmedOfWhitespace(QStringView text);

/// `text` without the white space and newlines at both ends. A view into it.
[[nodiscard]] QStringView trimmedOfWhitespaceAndNewlines(QStringView text);

} // namespace tamsy
