#include "Models/Track.h"

#include "Utils/TimeText.h"

#include <cmath>

namespace tamsy {

QString Track::durationFormatted() const {
    if (!std::isfinite(duration) || duration <= 0)
        return QStringLiteral("--:--");
    return minutesAndSeconds(roundedSeconds(duration));
}

} // namespace tamsy
