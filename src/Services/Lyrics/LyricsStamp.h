#pragma once

#include <QStringView>

#include <optional>

namespace tamsy {

/// A time stamp in a text: "[m:ss]" or "[mm:ss]", with ".ff" or ".fff" behind the seconds at will.
/// A digit is any Unicode decimal digit. All views lie in the text that was searched.
struct LyricsStamp {
    QStringView minutes;                 ///< one or two digits
    QStringView seconds;                 ///< two digits
    std::optional<QStringView> fraction; ///< two or three digits; absent without a dot
    QStringView rest;                    ///< what stands behind the closing bracket
};

/// The first stamp in `text`, wherever it stands. Takes time in proportion to the text.
[[nodiscard]] std::optional<LyricsStamp> findStamp(QStringView text);

/// The stamp's time in seconds; seconds above 59 count as they stand. Nothing if minutes or seconds
/// have digits outside ASCII; a fraction that has counts as 0.
[[nodiscard]] std::optional<double> secondsOf(const LyricsStamp& stamp);

} // namespace tamsy
