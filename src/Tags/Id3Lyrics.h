#pragma once

#include <QByteArrayView>
#include <QString>

#include <optional>

namespace tamsy::media {

/// The payload of an ID3 SYLT frame as lines of "[mm:ss.xxx]text". Syllables are joined to lines
/// where the frame marks its lines with newlines, before their first words or behind their last;
/// else each entry is a line. Nothing if the times aren't in milliseconds or there are no words.
[[nodiscard]] std::optional<QString> synchronisedLyricsText(QByteArrayView payload);

} // namespace tamsy::media
