#pragma once

#include <QString>

#include <cstdint>

namespace tamsy {

/// `seconds` rounded to the nearest whole second, halves away from zero, and held within the signed
/// 64-bit range; not a number gives 0.
[[nodiscard]] std::int64_t roundedSeconds(double seconds);

/// Minutes and two-digit seconds ("62:05"). Minutes aren't split into hours.
[[nodiscard]] QString minutesAndSeconds(std::int64_t totalSeconds);

/// A position as the player shows it: "0:00" for what is not finite or below 0, else minutes and
/// seconds of the rounded value.
[[nodiscard]] QString timeString(double seconds);

} // namespace tamsy
