// Whether a seek lands where a decode from the start has the same sound: seek_report seeks file…
// Prints a row a file, with what decoding and seeking cost. Fails where any seek landed elsewhere.

#include "Playback/SeekTally.h"
#include "Utils/FileURL.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>

using namespace tamsy;
using namespace tamsy::test;

namespace {

using Clock = std::chrono::steady_clock;

double millisecondsSince(Clock::time_point start) {
    return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

bool report(const FileURL& url, int count) {
    std::printf("%-32s ", url.lastPathComponent().constData());
    std::fflush(stdout);
    const auto opening = Clock::now();
    const auto decoder = EngineDecoder::open(url);
    const double opened = millisecondsSince(opening);
    if (!decoder) {
        std::printf("refused in %.1f ms\n", opened);
        return false;
    }
    const double told = decoder->length();
    const auto decoding = Clock::now();
    const auto whole = EngineDecoder::open(url)->take();
    const double decoded = millisecondsSince(decoding);
    const double seconds = static_cast<double>(whole.size()) / mediaSampleRate;
    float peak = 0;
    for (const StereoFrame frame : whole)
        peak = std::max({peak, std::abs(frame.left), std::abs(frame.right)});
    const SeekTally tally = tallySeeks(*decoder, whole, count);
    std::printf("%9.3f %9.3f %5.2f %7.1f %7.2f %7.2f %7.1f   %5d %5d %5d %5d %5d", told, seconds,
                double{peak}, opened, decoded / seconds, 1000 * tally.totalSeconds / count,
                1000 * tally.longestSeconds, tally.equal, tally.inPlace, tally.elsewhere,
                tally.refused, tally.lost);
    if (tally.elsewhere > 0)
        std::printf("  %+.3f s at %.3f s", tally.worstOffset, tally.worstTarget);
    std::printf("\n");
    return tally.isRight();
}

} // namespace

int main(int argc, char** argv) {
    if (argc < 3) {
        std::fprintf(stderr, "usage: %s seeks file…\n", argv[0]);
        return 2;
    }
    std::printf("%-32s %9s %9s %5s %7s %7s %7s %7s   %5s %5s %5s %5s %5s\n", "file", "told/s",
                "true/s", "peak", "open/ms", "ms/s", "seek/ms", "longest", "equal", "1 ms", "else",
                "no", "lost");
    bool isRight = true;
    for (int i = 2; i < argc; ++i)
        isRight = report(FileURL::fromPath(argv[i]), std::atoi(argv[1])) && isRight;
    return isRight ? 0 : 1;
}
