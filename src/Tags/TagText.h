#pragma once

#include "Formats/ByteWindow.h"

#include <QByteArray>
#include <QString>

namespace tamsy::media {

/// A tag's text: decoded, or raw bytes whose encoding is detected when the whole tag has been read.
struct TagText {
    QString decoded;
    QByteArray rawBytes;
};

/// The text of a field that should be UTF-8: decoded if it is, else raw.
[[nodiscard]] TagText utf8Text(QByteArrayView bytes);

/// The text of a field that declares no encoding, or Latin-1: raw unless it is ASCII.
[[nodiscard]] TagText legacyText(QByteArrayView bytes);

/// Decodes UTF-16 by its byte order mark. Without one, uses the byte order in which more units look
/// like Latin, kana or Chinese characters, and little-endian if that doesn't decide, as programs
/// that omit the mark use it. An odd byte at the end is dropped.
[[nodiscard]] QString decodeUtf16(QByteArrayView bytes);

/// Decodes big-endian UTF-16, unless a byte order mark says otherwise.
[[nodiscard]] QString decodeUtf16BigEndian(QByteArrayView bytes);

/// Joins the values of `text`, separated by NULs, with "; ", without empty ones.
[[nodiscard]] QString joinedValues(const QString& text);

} // namespace tamsy::media
