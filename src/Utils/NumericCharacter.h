#pragma once

#include <QStringView>

namespace tamsy {

/// Whether `character` stands for a number in the Unicode sense (numeric type Decimal, Digit or
/// Numeric, Unicode 14): 7, ٣, Ⅳ, ½, and ideographs such as 一.
[[nodiscard]] bool isNumber(char32_t character);

/// Whether the first character of `text` is a number; false if there is none.
[[nodiscard]] bool startsWithNumber(QStringView text);

} // namespace tamsy
