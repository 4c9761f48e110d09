#include "ViewModels/PlayerViewModel.h"

#include "Utils/PlaybackLogger.h"

#include <QTimer>

#include <chrono>
#include <utility>

namespace tamsy {
namespace {

using namespace std::chrono_literals;

/// How long after the start of a file a lock that the previous track's end has set stays on. All
/// reports of the previous file have arrived by then.
constexpr auto lockReleaseDelay = 300ms;

/// How long an engine may take to report a position near a seek's target. The slowest seek measured
/// (the first one in an hour of raw AAC) took a third of this.
constexpr auto pendingSeekLimit = 600ms;

} // namespace

void PlayerDependencies::runOnTimer(std::chrono::milliseconds delay, QObject* context,
                                    std::function<void()> action) {
    QTimer::singleShot(delay, Qt::PreciseTimer, context, std::move(action));
}

PlayerViewModel::PlayerViewModel(std::unique_ptr<AudioPlaybackEngine> engine,
                                 PlayerDependencies dependencies, QObject* parent)
    : QObject(parent), engine_(std::move(engine)), dependencies_(std::move(dependencies)) {
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
    logToFile(u"▶️ play() called: " + url.lastPathComponentText());
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
    hasPreparedNext_ = false;
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
    runAfter(pendingSeekLimit, [this, seekNumber = ++seekNumber_, startNumber = startNumber_] {
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
    if (!nowPlayingWindow_ && dependencies_.makeNowPlayingWindow)
        nowPlayingWindow_ = dependencies_.makeNowPlayingWindow(*playerVM, *libraryVM);
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
    runAfter(lockReleaseDelay, [this] { isHandlingTrackEnd_ = false; });
}

void PlayerViewModel::runAfter(std::chrono::milliseconds delay, std::function<void()> action) {
    dependencies_.runAfter(delay, this, std::move(action));
}

void PlayerViewModel::logToFile(const QString& message) {
    PlaybackLogger::log(message);
}

} // namespace tamsy
