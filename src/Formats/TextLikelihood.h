#pragma once

#include "Formats/LegacyText.h"

namespace tamsy {

/// Bytes of a text that are looked at; a language shows long before.
inline constexpr qsizetype judgedBytes = 512;

/// How unlikely `text` is as a title in `encoding`, in bits: minus the logarithm of their
/// probability in a simple model of each language. Infinite if its bytes aren't valid in it.
[[nodiscard]] double costOfText(QByteArrayView text, LegacyEncoding encoding);

/// Whether there is kana in `text` if it is Shift-JIS, which few Japanese titles are without.
[[nodiscard]] bool hasKana(QByteArrayView text);

} // namespace tamsy
