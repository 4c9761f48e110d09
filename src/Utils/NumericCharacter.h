#pragma once

#include <QStringView>

namespace tamsy {

/// Whether `character` is numeric by Unicode's definition (numeric type Decimal, Digit or
/// Numeric, Unicode 14): 7, ٣, Ⅳ, ½, and ideographs such as 一.
[[nodiscard]] bool isNumber(char32_t character);

/// Whether the first character of `text` is numeric; false if `text` is empty.
[[nodiscard]] bool startsWithNumber(QStringView text);

} // namespace tamsy
