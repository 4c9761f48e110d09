#include "Playback/SeekTally.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <random>

namespace tamsy::test {
namespace {

using Frames = std::span<const StereoFrame>;

constexpr std::size_t comparedFrames = 2048;
constexpr std::ptrdiff_t tolerance = mediaSampleRate / 1000; // in frames
/// A resampler that starts elsewhere in its input rounds in another way.
constexpr float equalWithin = 1e-5F;

bool isEqual(Frames a, Frames b) {
    return std::ranges::equal(a, b, [](StereoFrame x, StereoFrame y) {
        return std::abs(x.left - y.left) <= equalWithin &&
               std::abs(x.right - y.right) <= equalWithin;
    });
}

/// How alike two sounds are: 1 for the same at any volume.
double correlation(Frames a, Frames b) {
    double ab = 0, aa = 0, bb = 0;
    for (std::size_t i = 0; i < std::min(a.size(), b.size()); ++i) {
        ab += double{a[i].left} * b[i].left + double{a[i].right} * b[i].right;
        aa += double{a[i].left} * a[i].left + double{a[i].right} * a[i].right;
        bb += double{b[i].left} * b[i].left + double{b[i].right} * b[i].right;
    }
    return aa > 0 && bb > 0 ? ab / std::sqrt(aa * bb) : 0;
}

/// The frame within `reach` of `frame` where `sound` fits best, and how well.
std::pair<std::ptrdiff_t, double> bestFit(Frames sound, Frames whole, std::ptrdiff_t frame,
                                          std::ptrdiff_t reach) {
    std::pair<std::ptrdiff_t, double> best{frame, 0};
    const auto last =
        static_cast<std::ptrdiff_t>(whole.size() - std::min(whole.size(), sound.size()));
    for (auto at = std::max<std::ptrdiff_t>(0, frame - reach); at <= std::min(frame + reach, last);
         ++at) {
        const double fit =
            correlation(sound, whole.subspan(static_cast<std::size_t>(at), sound.size()));
        if (fit > best.second)
            best = {at, fit};
    }
    return best;
}

enum class Landing { Equal, InPlace, Elsewhere };

Landing landing(Frames sound, Frames whole, std::ptrdiff_t frame) {
    constexpr double alike = 0.95;
    const auto at = std::min(static_cast<std::size_t>(frame), whole.size());
    const Frames expected = whole.subspan(at).first(std::min(comparedFrames, whole.size() - at));
    if (isEqual(sound, expected))
        return Landing::Equal;
    const auto missing = static_cast<std::ptrdiff_t>(expected.size()) - std::ssize(sound);
    if (std::abs(missing) > tolerance)
        return Landing::Elsewhere;
    const bool isFewFrames = expected.size() <= static_cast<std::size_t>(tolerance);
    return isFewFrames || bestFit(sound, whole, frame, tolerance).second > alike
               ? Landing::InPlace
               : Landing::Elsewhere;
}

} // namespace

SeekTally tallySeeks(EngineDecoder& decoder, Frames whole, int count) {
    using Clock = std::chrono::steady_clock;
    SeekTally tally;
    std::mt19937 random(1); // NOLINT(cert-msc32-c,cert-msc51-cpp)
    std::uniform_int_distribution<std::ptrdiff_t> anywhere(0, std::ssize(whole));
    std::ptrdiff_t before = 0;
    for (int i = 0; i < count; ++i) {
        const std::ptrdiff_t target = anywhere(random);
        const auto start = Clock::now();
        const bool isDone = decoder.seek((static_cast<double>(target) + 0.25) / mediaSampleRate);
        const auto sound = decoder.take(comparedFrames);
        const double seconds = std::chrono::duration<double>(Clock::now() - start).count();
        tally.longestSeconds = std::max(tally.longestSeconds, seconds);
        tally.totalSeconds += seconds;
        const std::ptrdiff_t expected = isDone ? target : before;
        before = expected + std::ssize(sound);
        const Landing found = landing(sound, whole, expected);
        if (!isDone)
            ++(sound.empty() || found != Landing::Elsewhere ? tally.refused : tally.lost);
        else if (found != Landing::Elsewhere)
            ++(found == Landing::Equal ? tally.equal : tally.inPlace);
        else if (tally.elsewhere++ == 0) {
            constexpr std::ptrdiff_t reach = mediaSampleRate;
            tally.worstTarget = static_cast<double>(target) / mediaSampleRate;
            const auto [at, fit] =
                bestFit(Frames(sound).first(std::min<std::size_t>(512, sound.size())), whole,
                        target, reach);
            tally.worstOffset =
                fit > 0.7 ? static_cast<double>(at - target) / mediaSampleRate : NAN;
        }
    }
    return tally;
}

} // namespace tamsy::test
