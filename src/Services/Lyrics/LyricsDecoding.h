#pragma once

#include <QByteArrayView>
#include <QString>

#include <optional>

// Strict decoders: bytes that aren't valid in the named encoding give nothing, where Qt's decoders
// would insert replacement characters. A byte order mark at the start is removed. Any thread.
namespace tamsy {

/// UTF-8 (RFC 3629).
[[nodiscard]] std::optional<QString> decodeUTF8(QByteArrayView bytes);

/// UTF-16 (RFC 2781) by its byte order mark; without one, in this machine's byte order.
[[nodiscard]] std::optional<QString> decodeUTF16(QByteArrayView bytes);
[[nodiscard]] std::optional<QString> decodeUTF16LittleEndian(QByteArrayView bytes);
[[nodiscard]] std::optional<QString> decodeUTF16BigEndian(QByteArrayView bytes);

/// Text in an unknown encoding: the first of UTF-8, UTF-16 by its mark, UTF-16 little-endian,
/// UTF-16 big-endian and ISO 8859-1 that gives a non-empty text. The last accepts any bytes, so
/// only empty input gives nothing.
[[nodiscard]] std::optional<QString> decodeBestEffort(QByteArrayView bytes);

} // namespace tamsy
