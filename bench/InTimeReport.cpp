// How late lyric lines are marked while a file plays, and whether the delay drifts:
// in_time_report file seconds. Fails if a line is skipped, if one is marked later than the report
// interval plus 30 ms, or if the drift exceeds 30 ms.

#include "Views/NowPlaying/MarkedLines.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <cstdio>

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    const double seconds = arguments.size() == 3 ? arguments.at(2).toDouble() : 0;
    if (seconds <= 0) {
        std::fprintf(stderr, "usage: %s file seconds\n", argv[0]);
        return 2;
    }
    constexpr double slack = 0.03;
    constexpr double interval = 0.25; // seconds between the engines' reports

    const auto audio =
        tamsy::FileURL::fromPath(QFile::encodeName(QFileInfo(arguments.at(1)).absoluteFilePath()));
    const tamsy::test::MarkedLines marked = tamsy::test::markedLines(audio, 0, seconds);
    if (marked.delays.empty()) {
        std::fprintf(stderr, "in time: nothing was played\n");
        return 1;
    }
    std::printf("in time: %zu lines in %.0f s: earliest %.3f s, 95 of 100 within %.3f s of %.2f s, "
                "latest %.3f s; drift %+.3f s\n",
                marked.delays.size(), seconds, std::ranges::min(marked.delays), marked.at95(),
                interval + slack, std::ranges::max(marked.delays), marked.drift());
    const bool isInTime = marked.areAllThere && marked.at95() <= interval + slack &&
                          marked.drift() <= slack && marked.drift() >= -slack;
    return isInTime ? 0 : 1;
}
