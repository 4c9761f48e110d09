#include "Views/NowPlaying/MarkedLines.h"

#include "Playback/CompositePlaybackEngine.h"
#include "Views/NowPlaying/NowPlayingModel.h"

#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>
#include <cmath>
#include <optional>
#include <span>

namespace tamsy::test {

namespace {

constexpr double between = 0.61; // seconds

/// The file under another name, with lyrics beside it: the line `n` belongs to `n` times `between`.
FileURL withLyrics(const FileURL& audio, const QTemporaryDir& directory, double seconds) {
    const QString link = directory.filePath(u"song."_qs + QString::fromUtf8(audio.pathExtension()));
    QFile::link(QFile::decodeName(audio.path()), link);
    QFile sidecar(directory.filePath(u"song.lrc"_qs));
    if (!sidecar.open(QIODevice::WriteOnly))
        return {};
    for (int line = 0; line * between < seconds; ++line) {
        const double time = line * between;
        const int minutes = static_cast<int>(time / 60);
        sidecar.write(
            QString::asprintf("[%02d:%06.3f]%d\n", minutes, time - minutes * 60, line).toUtf8());
    }
    return FileURL::fromPath(QFile::encodeName(link));
}

/// The value that `part` of all are no larger than.
double quantile(std::span<const double> values, double part) {
    std::vector<double> sorted(values.begin(), values.end());
    std::ranges::sort(sorted);
    return sorted.at(static_cast<std::size_t>(part * static_cast<double>(sorted.size() - 1)));
}

} // namespace

double MarkedLines::at95() const {
    return quantile(delays, 0.95);
}

double MarkedLines::drift() const {
    const std::span<const double> all = delays;
    const std::size_t tenth = std::min(all.size(), std::max<std::size_t>(25, all.size() / 10));
    return quantile(all.last(tenth), 0.5) - quantile(all.first(tenth), 0.5);
}

MarkedLines markedLines(const FileURL& audio, double start, double seconds) {
    const QTemporaryDir directory;
    PlayerViewModel player{std::make_unique<CompositePlaybackEngine>()};
    NowPlayingModel model;
    model.setPlayer(&player);
    player.play(withLyrics(audio, directory, start + seconds));
    MarkedLines marked;
    if (!QTest::qWaitFor([&] { return model.lyrics()->count() > 0 && player.currentTime() > 0; },
                         10'000))
        return marked;
    if (start > 0) {
        player.seek(start);
        if (!QTest::qWaitFor([&] { return !player.pendingSeekTarget(); }, 5'000))
            return marked;
    }

    QElapsedTimer clock;
    double zero = 0; // the clock's time of the file's beginning, in seconds
    const auto now = [&] { return static_cast<double>(clock.nsecsElapsed()) / 1e9; };
    QObject::connect(&player, &PlayerViewModel::currentTimeChanged, &model, [&] {
        if (clock.isValid())
            return;
        clock.start();
        zero = -player.currentTime();
    });
    std::optional<int> former;
    QObject::connect(model.lyrics(), &LyricsPanelModel::currentLyricIndexChanged, &model, [&] {
        const int index = model.lyrics()->currentLyricIndex();
        if (clock.isValid() && former) {
            marked.areAllThere &= index == *former + 1;
            marked.delays.push_back(now() - zero - index * between);
        }
        former = index;
    });
    // The end of the file stops the reports; the last line may be short of it.
    const auto limit = std::chrono::milliseconds(std::llround((seconds + 5) * 1000));
    (void)QTest::qWaitFor([&] { return clock.isValid() && now() > seconds - between; },
                          static_cast<int>(limit.count()));
    return marked;
}

} // namespace tamsy::test
