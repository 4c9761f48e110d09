#include "Utils/TimeText.h"

#include <cmath>
#include <limits>

namespace tamsy {

std::int64_t roundedSeconds(double seconds) {
    constexpr double limit = 9223372036854775808.0; // 2^63
    const double rounded = std::round(seconds);
    if (std::isnan(rounded))
        return 0;
    if (rounded >= limit)
        return std::numeric_limits<std::int64_t>::max();
    if (rounded < -limit)
        return std::numeric_limits<std::int64_t>::min();
    return static_cast<std::int64_t>(rounded);
}

QString minutesAndSeconds(std::int64_t totalSeconds) {
    return QStringLiteral("%1:%2")
        .arg(totalSeconds / 60)
        .arg(totalSeconds % 60, 2, 10, QLatin1Char('0'));
}

QString timeString(double seconds) {
    if (!std::isfinite(seconds) || seconds < 0)
        return minutesAndSeconds(0);
    return minutesAndSeconds(roundedSeconds(seconds));
}

} // namespace tamsy
