#include "Playback/Output/OutputWatch.h"

#include <utility>

namespace tamsy {
namespace {

/// Longer than any buffer that an output fills at once, in seconds.
constexpr double stillLimit = 1;

/// A sound server that is started anew is there again within this time, in seconds.
constexpr double lossLimit = 2;

/// What a new output takes in advance proves nothing, in seconds.
constexpr double proof = 0.5;

} // namespace

OutputWatch::Advice OutputWatch::look(double position, double elapsed) {
    const bool moved = std::exchange(position_, position) != position;
    still_ = moved ? 0 : still_ + elapsed;
    if (isLost_) {
        lostFor_ += elapsed;
        if (position > lostPosition_ + proof)
            reset();
    }
    if (still_ < stillLimit)
        return Advice::None;
    if (!std::exchange(isLost_, true))
        lostPosition_ = position;
    return lostFor_ < lossLimit ? Advice::Replace : Advice::GiveUp;
}

} // namespace tamsy
