// When a track has ended, and what plays next.

#include "Utils/CombineLatest.h"
#include "Utils/PlaybackLogger.h"
#include "ViewModels/PlayerViewModel.h"
#include "ViewModels/TrackNavigation.h"

#include <QRandomGenerator>
#include <QStringList>
#include <QTimer>

#include <chrono>

namespace tamsy {
namespace {

using namespace std::chrono_literals;

/// From the end of a repeated track to its reload.
constexpr auto repeatDelay = 100ms;

/// From the end of a repeated track until its next end may be handled.
constexpr auto repeatLockReleaseDelay = 300ms;

constexpr qsizetype loggedTrackCount = 10;

const QString autoEnd = QStringLiteral("🔴 [AUTO END] ");
const QString manualNext = QStringLiteral("🟢 [MANUAL NEXT] ");

QString text(bool value) {
    return value ? QStringLiteral("true") : QStringLiteral("false");
}

QString nameOrNil(const FileURL& url) {
    return url.isEmpty() ? QStringLiteral("nil") : url.lastPathComponentText();
}

void logModes(const QString& prefix, const PlayerViewModel& player) {
    PlaybackLogger::log(prefix + u"repeatOneEnabled=" + text(player.repeatOneEnabled()) +
                        u", shuffleEnabled=" + text(player.shuffleEnabled()));
    PlaybackLogger::log(prefix + u"currentURL=" + nameOrNil(player.currentURL()));
}

void logList(const QString& prefix, const TrackList& list) {
    PlaybackLogger::log(prefix + u"List count: " + QString::number(list.size()));
    if (list.isEmpty())
        return;
    QStringList names;
    for (const Track& track : list.first(std::min(list.size(), loggedTrackCount)))
        names.append(track.url.lastPathComponentText());
    PlaybackLogger::log(prefix + u"List tracks: " + names.join(QStringLiteral(", ")));
}

void logChoice(const QString& prefix, const FileURL& url) {
    PlaybackLogger::log(prefix + u"Will play: " + url.lastPathComponentText());
}

} // namespace

void PlayerViewModel::detectTrackEnds() {
    Subscriptions joined = combineLatest(
        this,
        [this](double time, double duration, bool playing) {
            handleReport(time, duration, playing);
        },
        engine_->currentTimePublisher(), engine_->durationPublisher(),
        engine_->isPlayingPublisher());
    std::move(joined.begin(), joined.end(), std::back_inserter(cancellables_));
}

void PlayerViewModel::handleReport(double time, double duration, bool playing) {
    if (!navigation::trackHasEnded(time, duration, playing))
        return;
    if (isHandlingTrackEnd_) {
        PlaybackLogger::log(QStringLiteral("🚫 Blocked by lock, isHandlingTrackEnd=true"));
        return;
    }
    isHandlingTrackEnd_ = true;
    PlaybackLogger::log(u"⏰ Auto-end triggered at remaining=" + QString::number(duration - time) +
                        u"s");
    handleTrackEnd();
}

void PlayerViewModel::handleTrackEnd() {
    logModes(autoEnd, *this);
    if (repeatOneEnabled_) {
        PlaybackLogger::log(autoEnd + u"Repeating the current track");
        restartCurrentTrack();
        return;
    }
    engine_->stop();
    std::optional<FileURL> url;
    if (shuffleEnabled_) {
        PlaybackLogger::log(autoEnd + u"Picking at random");
        url = getRandomTrackFromCurrentFolder(currentURL_);
    } else {
        PlaybackLogger::log(autoEnd + u"Stepping through the list");
        logList(autoEnd, getVisibleTrackList());
        url = getNextTrackInVisibleList(1);
    }
    // With nothing to play the lock stays, until the user starts a file.
    if (!url)
        return;
    logChoice(autoEnd, *url);
    play(*url);
}

void PlayerViewModel::restartCurrentTrack() {
    if (currentURL_.isEmpty())
        return;
    engine_->stop();
    QTimer::singleShot(repeatDelay, Qt::PreciseTimer, this,
                       [this, url = currentURL_] { startEngine(url); });
    QTimer::singleShot(repeatLockReleaseDelay, Qt::PreciseTimer, this,
                       [this] { isHandlingTrackEnd_ = false; });
}

void PlayerViewModel::next() {
    logModes(manualNext, *this);
    stepBy(1, manualNext);
}

void PlayerViewModel::previous() {
    stepBy(-1, {});
}

void PlayerViewModel::stepBy(int step, const QString& logPrefix) {
    const bool logs = !logPrefix.isEmpty();
    if (repeatOneEnabled_) {
        if (logs)
            PlaybackLogger::log(logPrefix + u"Starting the current track again");
        seek(0);
        engine_->play();
        return;
    }
    if (logs && !shuffleEnabled_)
        logList(logPrefix, getVisibleTrackList());
    const auto url = shuffleEnabled_ ? getRandomTrackFromCurrentFolder(currentURL_)
                                     : getNextTrackInVisibleList(step);
    if (!url)
        return;
    if (logs)
        logChoice(logPrefix, *url);
    play(*url);
}

TrackList PlayerViewModel::getVisibleTrackList() const {
    return library_ ? library_->filteredTracks() : TrackList();
}

std::optional<FileURL> PlayerViewModel::getNextTrackInVisibleList(int step) const {
    const TrackList list = getVisibleTrackList();
    const auto found = navigation::stepInList(list, currentURL_, step);
    if (!found)
        return std::nullopt;
    const FileURL& url = list.at(found->to).url;
    if (found->from) {
        PlaybackLogger::log(u"⚠️ CurrentIndex=" + QString::number(*found->from) +
                            u", NextIndex=" + QString::number(found->to));
        PlaybackLogger::log(u"⚠️ Current=" + list.at(*found->from).url.lastPathComponentText());
        PlaybackLogger::log(u"⚠️ Next=" + url.lastPathComponentText());
    }
    return url;
}

std::optional<FileURL>
PlayerViewModel::getRandomTrackFromCurrentFolder(const FileURL& excluding) const {
    if (!library_)
        return std::nullopt;
    const TrackList pool = navigation::shufflePool(
        library_->folders(), library_->selectedFolder(), [this] { return library_->allTracks(); },
        excluding);
    return navigation::randomTrack(pool, excluding, [](qsizetype bound) {
        return static_cast<qsizetype>(QRandomGenerator::system()->bounded(quint64(bound)));
    });
}

} // namespace tamsy
