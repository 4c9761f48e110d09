#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QString>

#include <vector>

namespace tamsy {

/// The encoding of text whose tag names none, or names Latin-1: for many years programs wrote that
/// whatever encoding the machine used.
enum class LegacyEncoding { Utf8, Gb18030, ShiftJis, Big5, EucKr, Windows1251, Windows1252 };

/// Detects the encoding of one file's texts together, since a short name alone says too little:
/// UTF-8 if all are valid, else the encoding in which they are most likely.
[[nodiscard]] LegacyEncoding detectLegacyEncoding(const std::vector<QByteArray>& texts);

/// Decodes `bytes`. If `encoding` is a single-byte encoding, text that is valid UTF-8 is decoded as
/// UTF-8.
[[nodiscard]] QString decodeLegacyText(QByteArrayView bytes, LegacyEncoding encoding);

} // namespace tamsy
