#pragma once

#include "Models/Lyrics.h"

#include <QStringView>

#include <optional>

// Turns text into lyrics. Any of the seven newline characters ends a line. Pure functions; any
// thread.
namespace tamsy {

/// Whether `text` contains a time stamp and so may be synced lyrics.
[[nodiscard]] bool hasStamps(QStringView text);

/// Parses LRC: one line of lyrics for each line of text that has a time stamp with words after it,
/// sorted by time. The first stamp of a line counts; all that follows is words. Header tags such as
/// "[ar:…]" are skipped. Nothing if no line is left.
[[nodiscard]] std::optional<Lyrics> parseLRCFormat(QStringView text);

/// All lines that aren't blank, without times. There may be none.
[[nodiscard]] Lyrics parsePlainLyrics(QStringView text);

/// For sources in which a stamp may be part of the words: synced lyrics if the text gives any, else
/// plain ones.
[[nodiscard]] Lyrics parseSyncedElsePlain(QStringView text);

/// For tags in which a stamp means synced lyrics: a text with stamps gives synced lyrics or
/// nothing, any other gives plain ones. Nothing for a blank text.
[[nodiscard]] std::optional<Lyrics> parseAsStampsDecide(QStringView text);

} // namespace tamsy
