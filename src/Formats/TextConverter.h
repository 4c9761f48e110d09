#pragma once

#include <QByteArray>
#include <QByteArrayView>

namespace tamsy {

/// Converts between two encodings, named as in the C library, up to the first invalid byte; empty
/// if one is unknown. Any thread.
[[nodiscard]] QByteArray convertText(QByteArrayView bytes, const char* from, const char* to);

} // namespace tamsy
