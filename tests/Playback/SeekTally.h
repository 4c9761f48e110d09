#pragma once

#include "Playback/EngineDecoder.h"

#include <span>
#include <vector>

namespace tamsy::test {

/// What became of random seeks in a file, held against the same file decoded from its start.
struct SeekTally {
    int equal = 0;             // the samples are the same
    int inPlace = 0;           // the sound is the same, give or take a millisecond
    int elsewhere = 0;         // the seek answered success
    int refused = 0;           // and the sound went on where it was, or ended
    int lost = 0;              // refused, and the sound went on elsewhere
    double worstTarget = 0;    // seconds, of a seek that landed elsewhere
    double worstOffset = 0;    // seconds by which that was late, as far as can be told
    double longestSeconds = 0; // of all seeks, each with the first frames after it
    double totalSeconds = 0;

    [[nodiscard]] bool isRight() const { return elsewhere == 0 && lost == 0; }
};

/// Tries `count` seeks over the length of `whole`, the same ones in each run.
[[nodiscard]] SeekTally tallySeeks(EngineDecoder& decoder, std::span<const StereoFrame> whole,
                                   int count);

} // namespace tamsy::test
