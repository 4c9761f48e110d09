#include "Playback/FFmpeg/AVPlaybackEngine.h"

#include "Platform/Desktop/SystemLog.h"
#include "Playback/FFmpeg/MediaPlayer.h"
#include "Utils/FileURL.h"
#include "Utils/PlaybackLogger.h"

#include <algorithm>
#include <cmath>

namespace tamsy {
namespace {

using Status = MediaPlayer::TimeControlStatus;

/// The time scale of seek targets, in units per second: a multiple of usual film frame rates.
constexpr double timeScale = 600;

constexpr double minUpdateInterval = 0.05; // seconds

double toMediaTime(double seconds) {
    return std::round(seconds * timeScale) / timeScale;
}

double finiteOrZero(double seconds) {
    return std::isfinite(seconds) ? seconds : 0;
}

} // namespace

AVPlaybackEngine::AVPlaybackEngine() : thread_(std::make_unique<MediaPlaybackThread>()) {}

AVPlaybackEngine::~AVPlaybackEngine() {
    removeObservers();
}

void AVPlaybackEngine::load(const FileURL& url) {
    removeObservers();
    SystemLog::write("[AV] load url=" + url.absoluteString());
    PlaybackLogger::log(QLatin1String("[AV] load url=") + QString::fromUtf8(url.absoluteString()));
    player_ = std::make_unique<MediaPlayer>(*thread_, url);
    player_->setVolume(currentVolume_);
    subscriptions_.push_back(player_->durationPublisher().subscribe(
        [this](double duration) { durationSubject_.send(finiteOrZero(duration)); }));
    addPeriodicTimeObserver();
    timeControlObserver_ = player_->timeControlStatusPublisher().subscribe([this](Status status) {
        PlaybackLogger::log(QLatin1String("[AV] timeControlStatus=") +
                            QString::number(static_cast<int>(status)));
        isPlayingSubject_.send(status == Status::Playing);
    });
    endObserver_ = player_->observePlayedToEnd([this] { itemDidEnd(); });
}

void AVPlaybackEngine::prepare(const FileURL& url) {
    thread_->prepare(url.path());
}

void AVPlaybackEngine::addPeriodicTimeObserver() {
    timeObserverToken_ = player_->addPeriodicTimeObserver(
        updateInterval_, [this](double time) { currentTimeSubject_.send(finiteOrZero(time)); });
}

void AVPlaybackEngine::itemDidEnd() {
    isPlayingSubject_.send(false);
}

void AVPlaybackEngine::play() {
    PlaybackLogger::log(QStringLiteral("[AV] play"));
    if (player_)
        player_->play();
}

void AVPlaybackEngine::pause() {
    PlaybackLogger::log(QStringLiteral("[AV] pause"));
    if (player_)
        player_->pause();
}

void AVPlaybackEngine::stop() {
    PlaybackLogger::log(QStringLiteral("[AV] stop"));
    if (player_) {
        player_->pause();
        player_->dropItem();
    }
    isPlayingSubject_.send(false);
    currentTimeSubject_.send(0);
    durationSubject_.send(0);
    removeObservers();
}

void AVPlaybackEngine::removeObservers() {
    subscriptions_.clear();
    timeObserverToken_.cancel();
    timeControlObserver_.cancel();
    endObserver_.cancel();
}

void AVPlaybackEngine::seek(double seconds) {
    if (!player_)
        return;
    PlaybackLogger::log(QLatin1String("[AV] seek to ") + QString::number(seconds));
    player_->seek(toMediaTime(seconds));
}

void AVPlaybackEngine::setVolume(float volume) {
    currentVolume_ = volume;
    if (player_)
        player_->setVolume(volume);
}

void AVPlaybackEngine::setUpdateInterval(double seconds) {
    updateInterval_ = std::max(minUpdateInterval, seconds);
    if (!player_)
        return;
    timeObserverToken_.cancel();
    addPeriodicTimeObserver();
}

} // namespace tamsy
