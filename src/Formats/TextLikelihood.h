#pragma once

#include "Formats/LegacyText.h"

namespace tamsy {

/// The number of bytes of a text that are examined; far fewer show the language.
inline constexpr qsizetype examinedBytes = 512;

/// How unlikely `text` is as a title in `encoding`, in bits: the negative logarithm of its
/// probability in a simple model of the language. Infinite if it isn't valid in that encoding.
[[nodiscard]] double costOfText(QByteArrayView text, LegacyEncoding encoding);

/// Whether `text`, read as Shift-JIS, contains kana, as most Japanese titles do.
[[nodiscard]] bool hasKana(QByteArrayView text);

} // namespace tamsy
