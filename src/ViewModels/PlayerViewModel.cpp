#include "ViewModels/PlayerViewModel.h"

#include "Utils/PlaybackLogger.h"

#include <QTimer>

#include <chrono>

namespace tamsy {
namespace {

using namespace std::chrono_literals;

/// From the start of a file until its end may be handled: the reports of the file before have
/// passed by then.
constexpr auto lockReleaseDelay = 300ms;

/// How long an engine may take to report a position near a seek's target. The slowest seek that was
/// measured (the first one in an hour of raw AAC) takes a third of it.
constexpr auto pendingSeekLimit = 600ms;

} // namespace

PlayerViewModel::PlayerViewModel(std::unique_ptr<AudioPlaybackEngine> engine,
                                 PlayerSurroundings surroundings, QObject* parent)
    : QObject(parent), engine_(std::move(engine)), surroundings_(std::move(surroundings)) {
    bindEngine();
    wireVisibilityObservers();
    detectTrackEnds();
}

PlayerViewModel::~PlayerViewModel() = default;

QString PlayerViewModel::currentAddress() const {
    return QString::fromUtf8(currentURL_.absoluteString());
}

void PlayerViewModel::setIsSeeking(bool seeking) {
    const bool changed = isSeeking() != seeking;
    isSeeking_.send(seeking);
    if (changed)
        Q_EMIT isSeekingChanged();
}

double PlayerViewModel::position() const {
    return pendingSeekTarget().value_or(isUIVisible() ? currentTime_ : lastBufferedTime_);
}

void PlayerViewModel::setVolume(float volume) {
    const bool changed = volume_ != volume;
    volume_ = volume;
    engine_->setVolume(volume_);
    if (changed)
        Q_EMIT volumeChanged();
}

void PlayerViewModel::attachLibrary(LibraryViewModel* library) {
    library_ = library;
}

void PlayerViewModel::play(const FileURL& url) {
    PlaybackLogger::log(u"▶️ play() called: " + url.lastPathComponentText());
    engine_->stop();
    if (!(currentURL_ == url)) {
        currentURL_ = url;
        Q_EMIT currentURLChanged();
    }
    setCurrentTitle({});
    scheduleLockRelease();
    loadTrackInformation(url);
    startEngine(url);
}

void PlayerViewModel::startEngine(const FileURL& url) {
    ++startNumber_;
    engine_->load(url);
    engine_->play();
}

void PlayerViewModel::togglePlayPause() {
    if (isPlaying_)
        engine_->pause();
    else
        engine_->play();
}

void PlayerViewModel::seek(double seconds) {
    setPendingSeekTarget(seconds);
    setCurrentTime(seconds);
    QTimer::singleShot(pendingSeekLimit, this,
                       [this, seekNumber = ++seekNumber_, startNumber = startNumber_] {
                           giveUpPendingSeek(seekNumber, startNumber);
                       });
    engine_->seek(seconds);
}

void PlayerViewModel::toggleShuffle() {
    shuffleEnabled_ = !shuffleEnabled_;
    Q_EMIT shuffleEnabledChanged();
    if (shuffleEnabled_ && repeatOneEnabled_) {
        repeatOneEnabled_ = false;
        Q_EMIT repeatOneEnabledChanged();
    }
}

void PlayerViewModel::toggleRepeatOne() {
    repeatOneEnabled_ = !repeatOneEnabled_;
    Q_EMIT repeatOneEnabledChanged();
    if (repeatOneEnabled_ && shuffleEnabled_) {
        shuffleEnabled_ = false;
        Q_EMIT shuffleEnabledChanged();
    }
}

void PlayerViewModel::showNowPlayingWindow(PlayerViewModel* playerVM, LibraryViewModel* libraryVM) {
    if (currentArtwork_.isNull() && !currentURL_.isEmpty())
        showArtwork(currentURL_, nullptr);
    if (!nowPlayingWindow_ && surroundings_.makeNowPlayingWindow)
        nowPlayingWindow_ = surroundings_.makeNowPlayingWindow(*playerVM, *libraryVM);
    if (nowPlayingWindow_)
        nowPlayingWindow_->makeKeyAndOrderFront();
}

void PlayerViewModel::setCurrentTitle(const QString& title) {
    if (currentTitle_ == title)
        return;
    currentTitle_ = title;
    Q_EMIT currentTitleChanged();
}

void PlayerViewModel::setCurrentTime(double seconds) {
    if (currentTime_ == seconds)
        return;
    currentTime_ = seconds;
    Q_EMIT currentTimeChanged();
}

void PlayerViewModel::setPendingSeekTarget(std::optional<double> seconds) {
    const bool changed = pendingSeekTarget() != seconds;
    pendingSeekTarget_.send(seconds);
    if (changed)
        Q_EMIT pendingSeekTargetChanged();
}

void PlayerViewModel::scheduleLockRelease() {
    QTimer::singleShot(lockReleaseDelay, Qt::PreciseTimer, this,
                       [this] { isHandlingTrackEnd_ = false; });
}

} // namespace tamsy
