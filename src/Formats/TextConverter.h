#pragma once

#include <QByteArray>
#include <QByteArrayView>

namespace tamsy {

/// Converts between two encodings by their names in the C library, as far as the bytes are valid;
/// empty if it knows no such encoding. Any thread.
[[nodiscard]] QByteArray convertText(QByteArrayView bytes, const char* from, const char* to);

} // namespace tamsy
