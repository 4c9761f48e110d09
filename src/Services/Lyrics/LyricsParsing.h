#pragma once

#include "Models/Lyrics.h"

#include <QStringView>

#include <optional>

// From text to lyrics. Lines end at any of the seven newline characters. Pure functions; any
// thread.
namespace tamsy {

/// Whether a time stamp stands anywhere in `text`, which makes it worth reading as synced lyrics.
[[nodiscard]] bool hasStamps(QStringView text);

/// Reads LRC: one line of lyrics for each line of text that has a stamp and words behind it, sorted
/// by time. Only the first stamp of a line counts and the rest is words; header tags such as
/// "[ar:…]" are skipped. Nothing if no line is left.
[[nodiscard]] std::optional<Lyrics> parseLRCFormat(QStringView text);

/// Every line that isn't blank, without times. There may be none.
[[nodiscard]] Lyrics parsePlainLyrics(QStringView text);

/// For sources whose stamps may be part of the words: synced lyrics if the text has stamps and
/// gives any, else plain ones.
[[nodiscard]] Lyrics parseSyncedElsePlain(QStringView text);

/// For tags where a stamp promises synced lyrics: with stamps these or nothing, else plain ones.
/// Nothing for a blank text.
[[nodiscard]] std::optional<Lyrics> parseAsStampsDecide(QStringView text);

} // namespace tamsy
