// When a track has ended, and what plays next.

#include "Utils/CombineLatest.h"
#include "ViewModels/PlayerViewModel.h"
#include "ViewModels/TrackNavigation.h"

#include <QRandomGenerator>
#include <QStringList>

#include <chrono>

namespace tamsy {
namespace {

using namespace std::chrono_literals;

/// How long after its end a repeated track is loaded again.
constexpr auto repeatDelay = 100ms;

/// How long after the end of a repeated track its next end isn't handled.
constexpr auto repeatLockReleaseDelay = 300ms;

constexpr qsizetype loggedTrackCount = 10;

QString text(bool value) {
    return value ? QStringLiteral("true") : QStringLiteral("false");
}

QString nameOrNil(const FileURL& url) {
    return url.isEmpty() ? QStringLiteral("nil") : url.lastPathComponentText();
}

} // namespace

void PlayerViewModel::logState(QStringView repeatPrefix, QStringView currentPrefix) const {
    logToFile(repeatPrefix + text(repeatOneEnabled_) + u", shuffleEnabled=" +
              text(shuffleEnabled_));
    logToFile(currentPrefix + nameOrNil(currentURL_));
}

void PlayerViewModel::logList(QStringView countPrefix, QStringView tracksPrefix,
                              const TrackList& list) {
    logToFile(countPrefix + QString::number(list.size()));
    if (list.isEmpty())
        return;
    QStringList names;
    for (const Track& track : list.first(std::min(list.size(), loggedTrackCount)))
        names.append(track.url.lastPathComponentText());
    logToFile(tracksPrefix + names.join(QStringLiteral(", ")));
}

void PlayerViewModel::detectTrackEnds() {
    Subscriptions combined = combineLatest(
        this,
        [this](double time, double duration, bool playing) {
            handleReport(time, duration, playing);
        },
        engine_->currentTimePublisher(), engine_->durationPublisher(),
        engine_->isPlayingPublisher());
    std::move(combined.begin(), combined.end(), std::back_inserter(cancellables_));
}

void PlayerViewModel::handleReport(double time, double duration, bool playing) {
    if (navigation::isNearEnd(time, duration, playing))
        prepareNextTrack();
    if (!navigation::trackHasEnded(time, duration, playing))
        return;
    if (isHandlingTrackEnd_) {
        logToFile(QStringLiteral("🚫 Blocked by lock, isHandlingTrackEnd=true"));
        return;
    }
    isHandlingTrackEnd_ = true;
    logToFile(u"⏰ Auto-end triggered at remaining=" + QString::number(duration - time) + u"s");
    handleTrackEnd();
}

void PlayerViewModel::handleTrackEnd() {
    logState(u"🔴 [AUTO END] repeatOneEnabled=", u"🔴 [AUTO END] currentURL=");
    if (repeatOneEnabled_) {
        restartCurrentTrack();
        return;
    }
    engine_->stop();
    std::optional<FileURL> url;
    if (shuffleEnabled_) {
        url = getRandomTrackFromCurrentFolder(currentURL_);
    } else {
        logList(u"🔴 [AUTO END] List count: ", u"🔴 [AUTO END] List tracks: ", getVisibleTrackList());
        url = getNextTrackInVisibleList(1);
    }
    // With nothing to play the lock stays on until the user starts a file.
    if (!url)
        return;
    logToFile(u"🔴 [AUTO END] Will play: " + url->lastPathComponentText());
    play(*url);
}

/// What shuffle picks isn't known before the end, and a repeated file is in memory.
void PlayerViewModel::prepareNextTrack() {
    if (hasPreparedNext_ || shuffleEnabled_ || repeatOneEnabled_)
        return;
    hasPreparedNext_ = true;
    const TrackList list = getVisibleTrackList();
    if (const auto step = navigation::stepInList(list, currentURL_, 1))
        engine_->prepare(list.at(step->to).url);
}

void PlayerViewModel::restartCurrentTrack() {
    if (currentURL_.isEmpty())
        return;
    engine_->stop();
    runAfter(repeatDelay, [this, url = currentURL_] { startEngine(url); });
    runAfter(repeatLockReleaseDelay, [this] { isHandlingTrackEnd_ = false; });
}

void PlayerViewModel::next() {
    logState(u"🟢 [MANUAL NEXT] repeatOneEnabled=", u"🟢 [MANUAL NEXT] currentURL=");
    stepBy(1, true);
}

void PlayerViewModel::previous() {
    stepBy(-1, false);
}

void PlayerViewModel::stepBy(int step, bool logs) {
    if (repeatOneEnabled_) {
        seek(0);
        engine_->play();
        return;
    }
    if (logs && !shuffleEnabled_)
        logList(u"🟢 [MANUAL NEXT] List count: ", u"🟢 [MANUAL NEXT] List tracks: ",
                getVisibleTrackList());
    const auto url = shuffleEnabled_ ? getRandomTrackFromCurrentFolder(currentURL_)
                                     : getNextTrackInVisibleList(step);
    if (!url)
        return;
    if (logs)
        logToFile(u"🟢 [MANUAL NEXT] Will play: " + url->lastPathComponentText());
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
        logToFile(u"⚠️ CurrentIndex=" + QString::number(*found->from) + u", NextIndex=" +
                  QString::number(found->to));
        logToFile(u"⚠️ Current=" + list.at(*found->from).url.lastPathComponentText());
        logToFile(u"⚠️ Next=" + url.lastPathComponentText());
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
