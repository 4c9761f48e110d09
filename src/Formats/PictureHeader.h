#pragma once

#include <QByteArray>
#include <QSize>

namespace tamsy {

/// The picture's format by its first bytes; empty if it isn't a format that covers use. Qt is given
/// this name, so that it doesn't try formats with weak signatures or references to other files.
[[nodiscard]] QByteArray pictureFormat(const QByteArray& bytes);

/// The memory in bytes that decoding needs while a picture of `size` pixels is scaled down to
/// `scaled`, including the result. JPEG (ISO/IEC 10918-1) scales in eighths while decoding, but
/// keeps the coefficients of a picture with several scans; PNG (ISO/IEC 15948) scales row by row
/// unless it is interlaced or has to be converted.
[[nodiscard]] qint64 decodingMemory(const QByteArray& format, const QByteArray& bytes, QSize size,
                                    QSize scaled);

} // namespace tamsy
