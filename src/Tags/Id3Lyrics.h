#pragma once

#include <QByteArrayView>
#include <QString>

#include <optional>

namespace tamsy::media {

/// Converts the payload of an ID3 SYLT frame to lines of "[mm:ss.xxx]text". If the frame marks
/// lines with newlines, before their first words or after their last, syllables are joined;
/// otherwise each entry is a line. Nothing if the times aren't in milliseconds or there are no
/// words.
[[nodiscard]] std::optional<QString> synchronisedLyricsText(QByteArrayView payload);

} // namespace tamsy::media
