#pragma once

#include <QByteArray>
#include <QSize>

namespace tamsy {

/// The decoder for a picture's bytes, by its first ones; empty for what is no cover's format.
/// Naming it keeps out formats that are recognised by loose signs, or that may refer to other
/// files.
[[nodiscard]] QByteArray pictureFormat(const QByteArray& bytes);

/// Bytes that the decoder of `format` holds while it scales a picture of `size` pixels down to
/// `scaled`, the result counted. JPEG (ISO/IEC 10918-1) scales in eighths while it decodes, but
/// keeps the coefficients of a picture that comes in several passes; PNG (ISO/IEC 15948) scales row
/// by row unless it is interlaced or has to be converted.
[[nodiscard]] qint64 decodingMemory(const QByteArray& format, const QByteArray& bytes, QSize size,
                                    QSize scaled);

} // namespace tamsy
