#include "Utils/LyricsFontSettings.h"

#include <algorithm>

namespace tamsy {

double LyricsFontSettings::clamp(double size) {
    return std::clamp(size, minimumSize, maximumSize);
}

} // namespace tamsy
