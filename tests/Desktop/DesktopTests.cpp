#include "Desktop/DesktopIntegration.h"
#include "Desktop/Listener.h"
#include "Platform/Mpris/MprisProperties.h"
#include "Playback/FakeEngine.h"
#include "Services/Artwork/ThumbnailFiles.h"
#include "ViewModels/LibraryFixture.h"
#include "ViewModels/PlayerViewModel.h"

#include <QDBusConnectionInterface>
#include <QDBusError>
#include <QDBusPendingCall>
#include <QDBusVariant>
#include <QProcess>
#include <gmock/gmock.h>

#include <limits>
#include <tuple>

using namespace tamsy;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

constexpr qint64 farAway = std::numeric_limits<qint64>::max();
/// The real view models over a folder of three tracks and an engine without sound, on the bus.
class DesktopTest : public testing::Test, protected LibraryFixture {
  protected:
    void SetUp() override {
        add(u"音乐"_qs, {u"一~甲~丙"_qs, u"二"_qs, u"三"_qs});
        tracks = library->folders().constFirst().tracks;
        fake->loadedDuration = 100;
        player.attachLibrary(library.get());
        desktop.emplace(player, *library,
                        RemoteControls::Program{[this] { wishes.append(u"raise"_qs); },
                                                [this] { wishes.append(u"quit"_qs); }});
        ASSERT_TRUE(
            QTest::qWaitFor([&] { return client.interface()->isServiceRegistered(busName); }));
    }
    void TearDown() override {
        desktop.reset();
        QDBusConnection::sessionBus().interface()->unregisterService(busName);
    }

    void play(qsizetype index) {
        player.play(tracks.at(index).url);
        ASSERT_TRUE(QTest::qWaitFor([this] {
            return player.isPlaying() && player.duration() > 0 && !player.currentTitle().isEmpty();
        }));
    }

    /// What playerctl prints when it is given these words; "failed" if it does.
    static std::string playerctl(const QString& words) {
        QProcess process;
        process.start(u"playerctl"_qs, QStringList(u"--player=tamsy-music"_qs) + words.split(u' '));
        EXPECT_TRUE(
            QTest::qWaitFor([&] { return process.state() == QProcess::NotRunning; }, 20000));
        QTest::qWait(20); // the values' hop
        return process.exitCode() == 0 ? process.readAllStandardOutput().trimmed().toStdString()
                                       : "failed";
    }

    /// Calls an interface's member, with any types, and gives the last word of the error's name, or
    /// "" for success.
    std::string error(const QString& interface, const QString& member,
                      const QVariantList& arguments) {
        QDBusMessage call =
            QDBusMessage::createMethodCall(busName, mpris::objectPath, interface, member);
        call.setArguments(arguments);
        const QDBusPendingCall answer = client.asyncCall(call);
        EXPECT_TRUE(QTest::qWaitFor([&] { return answer.isFinished(); }));
        QTest::qWait(5); // the values' hop
        return answer.reply().errorName().section(u'.', -1).toStdString();
    }

    FakeEngine* fake = new FakeEngine;
    PlayerViewModel player{std::unique_ptr<AudioPlaybackEngine>(fake)};
    TrackList tracks;
    QStringList wishes;
    QDBusConnection client =
        QDBusConnection::connectToBus(QDBusConnection::SessionBus, u"client"_qs);
    std::optional<DesktopIntegration> desktop;
};

TEST_F(DesktopTest, ShowsWhatIsPlayedToARealClient) {
    EXPECT_EQ(playerctl(u"status"_qs), "Stopped");
    const ThumbnailFiles thumbnails(ThumbnailFiles::applicationSupportDirectory());
    thumbnails.write(QImage(8, 8, QImage::Format_RGB32), tracks.at(0).url, "512");
    play(0);
    fake->advance(2.5);
    const QByteArray picture =
        FileURL::fromPath(thumbnails.diskPath(player.currentURL(), "512")).absoluteString();
    EXPECT_EQ(playerctl(u"metadata --format {{status}}|{{title}}|{{artist}}|{{album}}|"
                        "{{mpris:length}}|{{duration(position)}}|{{volume}}|{{loop}}|{{shuffle}}|"
                        "{{xesam:url}}|{{mpris:artUrl}}"_qs),
              "Playing|一~甲~丙|甲|丙|100000000|0:02|0.5|None|false|" +
                  player.currentAddress().toStdString() + "|" + picture.toStdString());
}

TEST_F(DesktopTest, LooksForWhatIsPlayedOnlyWhenItMayHaveChanged) {
    const RemoteControls controls(player, *library, {});
    const auto track = [&] { return controls.state().track.value_or(MediaTrack()); };
    player.play(tracks.at(0).url);
    EXPECT_TRUE(track().artwork.isEmpty()) << "nobody has read the file yet";
    ThumbnailFiles(ThumbnailFiles::applicationSupportDirectory())
        .write(QImage(8, 8, QImage::Format_RGB32), tracks.at(0).url, "512");
    ASSERT_TRUE(QTest::qWaitFor([this] { return !player.currentArtwork().isNull(); }));
    const FileURL cover = track().artwork;
    EXPECT_TRUE(QFile::remove(QFile::decodeName(cover.path())));
    EXPECT_EQ(track().artwork, cover) << "no file is looked at for each question";
    EXPECT_EQ(track().artist, u"甲"_qs);
    EXPECT_TRUE(controls.state().canSkip);
    library->removeFolder(library->folders().constFirst().id);
    ASSERT_TRUE(QTest::qWaitFor([this] { return library->folders().isEmpty(); }));
    EXPECT_TRUE(track().artwork.isEmpty());
    EXPECT_TRUE(track().artist.isEmpty());
    EXPECT_FALSE(controls.state().canSkip);
}

TEST_F(DesktopTest, DoesWhatARealClientAsksFor) {
    const auto step = [this](qsizetype index) -> std::vector<std::string> {
        return {"stop", "load " + tracks.at(index).url.absoluteString().toStdString(), "play"};
    };
    const QByteArray open = "open " + tracks.at(1).url.absoluteString();
    const std::tuple<const char*, std::vector<std::string>, const char*> rows[] = {
        {"play-pause", {"pause"}, "Paused"},
        {"play", {"play"}, "Playing"},
        {"play", {}, "Playing"},
        {"pause", {"pause"}, "Paused"},
        {"pause", {}, "Paused"},
        {"position 12.5", {"seek 12.5"}, "Paused"},
        {"position 5+", {"seek 17.5"}, "Paused"},
        {"position 60-", {"seek 0"}, "Stopped"},
        {"volume 0.25", {"volume 0.25"}, "Stopped"},
        {"next", step(1), "Playing"},
        {"previous", step(0), "Playing"},
        {"position 200+", step(1), "Playing"},
        {"position 40", {"seek 40"}, "Playing"},
        {"stop", {"pause", "seek 0"}, "Stopped"},
        {open.constData(), step(1), "Playing"},
        {"loop Track", {}, "Playing"},
        {"next", {"seek 0", "play"}, "Playing"},
        {"shuffle On", {}, "Playing"}, // which ends the other mode
    };
    play(0);
    fake->advance(1);
    for (const auto& [command, calls, status] : rows) {
        fake->calls.clear();
        playerctl(QString::fromUtf8(command));
        EXPECT_EQ(fake->calls, calls) << command;
        EXPECT_EQ(playerctl(u"status"_qs), status) << command;
    }
    EXPECT_TRUE(player.shuffleEnabled());
    EXPECT_EQ(playerctl(u"loop"_qs), "None");
}

TEST_F(DesktopTest, RefusesWhatIsWrongAndIgnoresWhatIsLate) {
    const QString playerInterface = mpris::playerInterface;
    const auto set = [&](const char* name, const QVariant& value) {
        return QVariantList{playerInterface, QLatin1String(name),
                            QVariant::fromValue(QDBusVariant(value))};
    };
    const auto text = [](const char* utf8) { return QVariant(QString::fromUtf8(utf8)); };
    const QVariant here = QVariant::fromValue(mpris::trackId(tracks.at(0).url));
    const QVariant elsewhere = QVariant::fromValue(mpris::trackId(tracks.at(1).url));
    using Calls = std::vector<std::string>;
    const std::tuple<QLatin1String, const char*, QVariantList, const char*, Calls> rows[] = {
        {mpris::playerInterface, "SetPosition", {here, qint64(30'000'000)}, "", {"seek 30"}},
        {mpris::playerInterface, "SetPosition", {elsewhere, qint64(1)}, "", {}},
        {mpris::playerInterface, "SetPosition", {here, qint64(-1)}, "", {}},
        {mpris::playerInterface, "SetPosition", {here, qint64(100'000'001)}, "", {}},
        {mpris::playerInterface, "SetPosition", {here, farAway}, "", {}},
        {mpris::playerInterface, "SetPosition", {text("/x"), qint64(1)}, "InvalidArgs", {}},
        {mpris::playerInterface, "Seek", {-farAway}, "", {"seek 0"}},
        {mpris::playerInterface, "Seek", {1.5}, "InvalidArgs", {}},
        {mpris::playerInterface, "Explode", {}, "UnknownMethod", {}},
        {mpris::playerInterface, "OpenUri", {text("http://a/b.mp3")}, "InvalidArgs", {}},
        {mpris::playerInterface, "OpenUri", {text("file:///etc/passwd")}, "InvalidArgs", {}},
        {mpris::propertiesInterface, "Set", set("Volume", 7.0), "", {"volume 1"}},
        {mpris::propertiesInterface, "Set", set("Volume", -0.1), "", {"volume 0"}},
        {mpris::propertiesInterface, "Set", set("Volume", qQNaN()), "InvalidArgs", {}},
        {mpris::propertiesInterface, "Set", set("Volume", text("0.5")), "InvalidArgs", {}},
        {mpris::propertiesInterface, "Set", set("Shuffle", text("yes")), "InvalidArgs", {}},
        {mpris::propertiesInterface, "Set", set("LoopStatus", text("List")), "InvalidArgs", {}},
        {mpris::propertiesInterface, "Set", set("LoopStatus", text("Playlist")), "", {}},
        {mpris::propertiesInterface, "Set", set("Rate", 2.0), "InvalidArgs", {}},
        {mpris::propertiesInterface, "Set", set("Rate", 0.0), "", {"pause"}},
        {mpris::propertiesInterface, "Set", set("Metadata", 1), "PropertyReadOnly", {}},
        {mpris::propertiesInterface, "Set", set("Taste", 1), "UnknownProperty", {}},
        {mpris::propertiesInterface, "Get", {playerInterface}, "UnknownMethod", {}},
        {mpris::propertiesInterface, "Get", {playerInterface, text("x")}, "UnknownProperty", {}},
        {mpris::propertiesInterface, "GetAll", {text("a.b")}, "UnknownInterface", {}},
        {mpris::rootInterface, "Raise", {}, "", {}},
        {QLatin1String(), "Quit", {}, "", {}},
    };
    play(0);
    for (const auto& [interface, member, arguments, answer, calls] : rows) {
        fake->calls.clear();
        const std::string what = member + QDebug::toString(arguments).toStdString();
        EXPECT_EQ(error(interface, QString::fromUtf8(member), arguments), answer) << what;
        EXPECT_EQ(fake->calls, calls) << what;
    }
    EXPECT_EQ(wishes, (QStringList{u"raise"_qs, u"quit"_qs}));
    EXPECT_FALSE(player.shuffleEnabled());
}

TEST_F(DesktopTest, TellsWhatHasChangedAndNothingElse) {
    Listener listener(client);
    QTest::qWait(50);                // the bus learns of the listener
    listener.hear([&] { play(1); }); // its title stays when its tags have been read
    QStringList keys = listener.changes.back().keys();
    ASSERT_EQ(listener.changes.size(), 1U);
    EXPECT_EQ(keys, (QStringList{u"CanPause"_qs, u"CanPlay"_qs, u"CanSeek"_qs, u"Metadata"_qs,
                                 u"PlaybackStatus"_qs}));
    EXPECT_THAT(listener.jumps, ElementsAre(0));

    listener.hear([&] {
        fake->advance(3);
        QTest::qWait(200);
        EXPECT_THAT(listener.changes, IsEmpty());
        for (const double position : {10, 20, 30})
            player.seek(position);
    });
    EXPECT_THAT(listener.changes, IsEmpty());
    EXPECT_THAT(listener.jumps, ElementsAre(30'000'000));

    listener.hear([&] { player.setVolume(0.25F); });
    EXPECT_THAT(listener.changes, ElementsAre(QVariantMap{{u"Volume"_qs, 0.25}}));

    listener.hear([&] { library->setSearchText(u"nothing has that"_qs); });
    EXPECT_THAT(listener.changes,
                ElementsAre(QVariantMap{{u"CanGoNext"_qs, false}, {u"CanGoPrevious"_qs, false}}));

    // The same track from the start: no property differs, but the position does.
    listener.hear([&] { player.play(player.currentURL()); });
    EXPECT_THAT(listener.jumps, ElementsAre(0));
}

TEST_F(DesktopTest, KnowsThePositionWhileNobodyLooks) {
    Visibility visibility; // without a window
    auto* engine = new FakeEngine;
    engine->loadedDuration = 100;
    PlayerViewModel hidden(std::unique_ptr<AudioPlaybackEngine>(engine),
                           {.visibility = &visibility, .makeNowPlayingWindow = {}});
    RemoteControls controls(hidden, *library, {});
    hidden.play(tracks.at(0).url);
    engine->advance(12);
    EXPECT_TRUE(QTest::qWaitFor([&] { return controls.position() > 11; }));
    hidden.seek(40);
    EXPECT_EQ(controls.position(), 40);
}

TEST_F(DesktopTest, TakesANameOfItsOwnBesideAnotherProgram) {
    desktop.reset();
    QDBusConnection::sessionBus().interface()->unregisterService(busName);
    ASSERT_TRUE(client.registerService(busName));
    desktop.emplace(player, *library, RemoteControls::Program{});
    const QString own = busName + u".instance%1"_qs.arg(QCoreApplication::applicationPid());
    EXPECT_TRUE(QTest::qWaitFor([&] { return client.interface()->isServiceRegistered(own); }));
    EXPECT_TRUE(client.unregisterService(busName));
}

TEST_F(DesktopTest, OutlivesABusThatGoesAwayAndOneThatWasNeverThere) {
    QProcess daemon;
    daemon.start(u"dbus-daemon"_qs,
                 {u"--session"_qs, u"--nofork"_qs, u"--nopidfile"_qs, u"--print-address"_qs});
    ASSERT_TRUE(QTest::qWaitFor([&] { return daemon.canReadLine(); }));
    const QString address = QString::fromUtf8(daemon.readLine().trimmed());
    RemoteControls controls(player, *library, {});
    for (const QString& bus : {address, u"unix:path=/nowhere"_qs}) {
        const auto connection = QDBusConnection::connectToBus(bus, bus);
        MprisService mprisService(controls, {{}, {}, {}, u"x"_qs}, connection);
        SleepInhibitor inhibitor(u"a"_qs, u"b"_qs, connection);
        inhibitor.setInhibiting(true);
        daemon.kill();
        EXPECT_TRUE(QTest::qWaitFor([&] { return !connection.isConnected(); }));
        inhibitor.setInhibiting(false);
        player.setVolume(player.volume() + 0.1F);
        mprisService.noteChange();
        mprisService.noteJump();
        QTest::qWait(200);
    }
}

} // namespace
