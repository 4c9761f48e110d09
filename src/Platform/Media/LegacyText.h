#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QString>

#include <vector>

namespace tamsy::media {

/// What bytes of text are taken for when the tag names no encoding, or names Latin-1, which for
/// many years was written over whatever the writer's machine used.
enum class LegacyEncoding { Utf8, Chinese, Western };

/// Judges texts of one tag together, since the two or three letters of a name alone say too little.
[[nodiscard]] LegacyEncoding judgeLegacyEncoding(const std::vector<QByteArray>& texts);

/// Decodes `bytes` as GB18030 or Windows-1252; valid UTF-8 as that, whatever `encoding` says of its
/// neighbours, unless they are Chinese.
[[nodiscard]] QString decodeLegacyText(QByteArrayView bytes, LegacyEncoding encoding);

} // namespace tamsy::media
