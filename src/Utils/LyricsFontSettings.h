#pragma once

namespace tamsy {

/// Limits, default and step of the lyrics font size, in points.
struct LyricsFontSettings {
    static constexpr auto userDefaultsKey = "lyricsFontSizePoints";
    static constexpr double defaultSize = 46.0;
    static constexpr double minimumSize = 24.0;
    static constexpr double maximumSize = 96.0;
    static constexpr double step = 4.0;

    /// `size`, limited to the range from minimum to maximum.
    [[nodiscard]] static double clamp(double size);
};

} // namespace tamsy
