#pragma once

#include <QByteArrayView>

namespace tamsy {

/// Whether the file name `a` sorts before `b` for people: digits compare by value, so that "Track
/// 2" comes before "Track 10", and ASCII letters ignore case. Other bytes compare by value, which
/// for UTF-8 is code point order. A total order, the same on every machine: no two different names
/// are equivalent.
[[nodiscard]] bool naturallyBefore(QByteArrayView a, QByteArrayView b);

} // namespace tamsy
