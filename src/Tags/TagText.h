#pragma once

#include "Formats/ByteWindow.h"

#include <QByteArray>
#include <QString>

namespace tamsy::media {

/// Text as a tag holds it: decoded already, or bytes whose encoding is judged when the whole tag
/// has been read.
struct TagText {
    QString decoded;
    QByteArray undecided;
};

/// Text of a field that is UTF-8 by its standard: decoded if it is, else undecided.
[[nodiscard]] TagText utf8Text(QByteArrayView bytes);

/// Text of a field that names no encoding, or names Latin-1: undecided unless it is ASCII.
[[nodiscard]] TagText legacyText(QByteArrayView bytes);

/// Decodes UTF-16, in the byte order of its mark. Without a mark the order is the one in which
/// more of the units look like Latin, kana or Chinese characters; little-endian if that doesn't
/// decide, since the writers that leave the mark out write so. An odd byte at the end is dropped.
[[nodiscard]] QString decodeUtf16(QByteArrayView bytes);

/// Decodes big-endian UTF-16; a mark of either order wins over that.
[[nodiscard]] QString decodeUtf16BigEndian(QByteArrayView bytes);

/// Joins the values of `text` that NULs set apart with "; "; empty ones are left out.
[[nodiscard]] QString joinedValues(const QString& text);

} // namespace tamsy::media
