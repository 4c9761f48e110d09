#pragma once

#include <QString>

#include <cstdint>

namespace tamsy {

/// `seconds` rounded to the nearest whole second, halves away from zero, and clamped to the signed
/// 64-bit range; NaN gives 0.
[[nodiscard]] std::int64_t roundedSeconds(double seconds);

/// Minutes and two-digit seconds ("62:05"). Minutes aren't split into hours.
[[nodiscard]] QString minutesAndSeconds(std::int64_t totalSeconds);

/// A position as the player shows it: minutes and seconds of the rounded value, or "0:00" if
/// `seconds` is negative or not finite.
[[nodiscard]] QString timeString(double seconds);

} // namespace tamsy
