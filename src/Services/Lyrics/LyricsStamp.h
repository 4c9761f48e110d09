#pragma once

#include <QStringView>

#include <optional>

namespace tamsy {

/// A time stamp: "[m:ss]" or "[mm:ss]", optionally with ".ff" or ".fff" after the seconds. A digit
/// is any Unicode decimal digit. All views refer to the text that was searched.
struct LyricsStamp {
    QStringView minutes;                 ///< one or two digits
    QStringView seconds;                 ///< two digits
    std::optional<QStringView> fraction; ///< two or three digits; absent without a dot
    QStringView rest;                    ///< what follows the closing bracket
};

/// The first stamp in `text`, in linear time.
[[nodiscard]] std::optional<LyricsStamp> findStamp(QStringView text);

/// The stamp's time in seconds; seconds above 59 are allowed. Nothing if minutes or seconds have
/// digits outside ASCII; a fraction with such digits counts as 0.
[[nodiscard]] std::optional<double> secondsOf(const LyricsStamp& stamp);

} // namespace tamsy
