#pragma once

#include "Utils/FileURL.h"

#include <vector>

namespace tamsy::test {

/// How late the lines of a song were marked, by a clock that nothing but the first report of the
/// position sets.
struct MarkedLines {
    std::vector<double> delays; ///< seconds from each line's stamp to its mark, in their order
    bool areAllThere = true;    ///< none was passed over

    /// The delay that 95 of 100 lines keep within, in seconds; needs a line.
    [[nodiscard]] double at95() const;

    /// How much later than at first the lines are marked at last, in seconds: between the medians
    /// of the first and the last tenth, but at least 25 lines; exact to hundredths.
    [[nodiscard]] double drift() const;
};

/// Plays `audio` from `start` by the real engines for `seconds`, with lyrics beside it whose lines
/// are 0.61 s from each other, no multiple of the pace of reports. No delay if it doesn't play.
[[nodiscard]] MarkedLines markedLines(const FileURL& audio, double start, double seconds);

} // namespace tamsy::test
