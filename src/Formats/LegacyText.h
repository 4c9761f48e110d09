#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QString>

#include <vector>

namespace tamsy {

/// What bytes of text are taken for when the tag names no encoding, or names Latin-1, which for
/// many years was written over whatever the writer's machine used.
enum class LegacyEncoding { Utf8, Gb18030, ShiftJis, Big5, EucKr, Windows1251, Windows1252 };

/// Judges texts of one file together, since the two or three letters of a name alone say too
/// little: UTF-8 if all are valid, else the encoding in which they are likeliest.
[[nodiscard]] LegacyEncoding judgeLegacyEncoding(const std::vector<QByteArray>& texts);

/// Decodes `bytes`. In the encodings of one byte a letter, valid UTF-8 is decoded as that, whatever
/// `encoding` says of its neighbours.
[[nodiscard]] QString decodeLegacyText(QByteArrayView bytes, LegacyEncoding encoding);

} // namespace tamsy
