// Prints how long files of an hour take from the click to the sound where storage is slow, nothing
// cached: slow_mount_report FOLDER [PROFILE]
// The player does what it does in the program: title, cover and lyrics of the file are read
// meanwhile. Times are milliseconds.

#include "Playback/CompositePlaybackEngine.h"
#include "Services/Artwork/ArtworkLoader.h"
#include "Services/Lyrics/LyricsReader.h"
#include "SlowMount/SlowMount.h"
#include "ViewModels/PlayerViewModel.h"

#include <QCoreApplication>

#include <cstdio>
#include <memory>
#include <optional>
#include <string>
#include <thread>
#include <vector>

namespace {

using namespace tamsy;
using tamsy::test::LongestBlock;
using tamsy::test::SlowMount;

constexpr const char* names[] = {"long.mp3",  "long.wav", "long.flac", "long.ogg", "long.oga",
                                 "long.aiff", "long.aif", "long.caf",  "long.m4a", "long.aac"};

struct Profile {
    const char* name;
    const char* delay;
    const char* rate;
    bool isAsleep = false; // and answers nothing for so long after the click:
};
constexpr qint64 sleep = 1500;

constexpr Profile profiles[] = {
    {"LAN", "1", "100"}, {"Wi-Fi", "8", "4"}, {"USB", "2", "15"}, {"asleep", "2", "60", true}};

struct Player {
    Player() {
        auto made = std::make_unique<CompositePlaybackEngine>();
        engine = made.get();
        model = std::make_unique<PlayerViewModel>(std::move(made));
        model->setVolume(0.05F);
        engine->setUpdateInterval(0.05);
    }

    CompositePlaybackEngine* engine;
    std::unique_ptr<PlayerViewModel> model;
};

/// Milliseconds until `condition` holds, counted from `timer`'s start; nothing after ten seconds.
template <typename Condition>
std::optional<qint64> timeUntil(const QElapsedTimer& timer, Condition condition) {
    const bool isDone = QTest::qWaitFor(condition, 10'000);
    return isDone ? std::optional(timer.elapsed()) : std::nullopt;
}

std::string text(std::optional<qint64> milliseconds) {
    return milliseconds ? std::to_string(*milliseconds) : "-";
}

void readLyrics(const FileURL& url) {
    std::thread([url] { static_cast<void>(LyricsReader().load(url)); }).detach();
}

struct Times {
    std::optional<qint64> sound, title, cover, seek;
    qint64 blocked = 0;
};

/// The click, then a jump to the middle.
Times play(Player& player, SlowMount& mount, const char* name, bool isAsleep) {
    Times times;
    const qint64 before = player.model->currentArtwork().cacheKey();
    if (isAsleep)
        mount.hang(true);
    const FileURL url = mount.file(name);
    const LongestBlock block;
    QElapsedTimer timer;
    timer.start();
    player.model->play(url);
    readLyrics(url);
    if (isAsleep) {
        QTest::qWait(sleep);
        mount.hang(false);
        timer.restart();
    }
    times.sound = timeUntil(timer, [&] { return player.model->currentTime() > 0; });
    times.title = timeUntil(timer, [&] { return !player.model->currentTitle().isEmpty(); });
    if (isAsleep) // the rest is what it is on a disk that is awake
        return times.blocked = block.milliseconds(), times;
    times.cover =
        timeUntil(timer, [&] { return player.model->currentArtwork().cacheKey() != before; });
    constexpr double middle = 1800;
    timer.restart();
    player.model->seek(middle);
    times.seek = timeUntil(timer, [&] { return player.model->position() > middle + 0.02; });
    times.blocked = block.milliseconds();
    return times;
}

/// The click while covers of all other files are read.
std::optional<qint64> playBesideCovers(Player& player, SlowMount& mount, const char* name) {
    for (const char* other : names) {
        if (other != name)
            ArtworkLoader::shared().load(mount.file(other), ArtworkLoader::Variant::thumb64,
                                         [](const QImage&) {});
    }
    QTest::qWait(100);
    QElapsedTimer timer;
    timer.start();
    player.model->play(mount.file(name));
    return timeUntil(timer, [&] { return player.model->currentTime() > 0; });
}

} // namespace

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    const QString folder = application.arguments().value(1);
    const auto mount = [&](const Profile& profile) {
        return std::make_unique<SlowMount>(QStringLiteral(SLOW_MOUNT), folder,
                                           QString::fromLatin1(profile.delay),
                                           QString::fromLatin1(profile.rate));
    };
    Player player;
    for (const char* first : {"long.wav", "long.aiff"}) { // opens each engine's first device
        player.model->play(FileURL::fromPath(QFile::encodeName(folder)).appending(first));
        static_cast<void>(QTest::qWaitFor([&] { return player.model->currentTime() > 0; }));
    }
    const QString only = application.arguments().value(2);
    for (const Profile& profile : profiles) {
        if (!only.isEmpty() && only != QLatin1String(profile.name))
            continue;
        std::printf("slow mount: %-6s sound  beside covers  seek  title  cover  blocked\n",
                    profile.name);
        for (const char* name : names) {
            auto slow = mount(profile);
            if (!slow->isMounted()) {
                std::printf("slow mount: no FUSE mounts here\n");
                return 0;
            }
            const Times times = play(player, *slow, name, profile.isAsleep);
            player.engine->stop();
            slow = mount(profile);
            const auto beside =
                profile.isAsleep ? std::nullopt : playBesideCovers(player, *slow, name);
            player.engine->stop();
            std::printf("slow mount: %-9s %5s %11s %8s %6s %6s %8lld\n", name,
                        text(times.sound).c_str(), text(beside).c_str(), text(times.seek).c_str(),
                        text(times.title).c_str(), text(times.cover).c_str(), times.blocked);
            std::fflush(stdout);
        }
    }
}
