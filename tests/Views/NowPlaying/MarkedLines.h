#pragma once

#include "Utils/FileURL.h"

#include <vector>

namespace tamsy::test {

/// How late the lines of a song were marked, by a clock that only the first position report sets.
struct MarkedLines {
    std::vector<double> delays; ///< seconds from each line's stamp to its mark, in their order
    bool areAllThere = true;    ///< no line was skipped

    /// The 95th percentile of the delays in seconds. Needs at least one line.
    [[nodiscard]] double at95() const;

    /// The drift of the delays in seconds: the difference between the medians of the first and the
    /// last tenth, or 25 lines, exact to hundredths.
    [[nodiscard]] double drift() const;
};

/// Plays `audio` from `start` on the real engines for `seconds`, with lyrics whose lines are 0.61 s
/// apart, which isn't a multiple of the report interval. No delays if it doesn't play.
[[nodiscard]] MarkedLines markedLines(const FileURL& audio, double start, double seconds);

} // namespace tamsy::test
