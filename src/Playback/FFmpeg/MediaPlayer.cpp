#include "Playback/FFmpeg/MediaPlayer.h"

#include "Utils/FileURL.h"

#include <QMetaObject>
#include <QPointer>

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace tamsy {
namespace {

constexpr int supplyInterval = 100; // milliseconds between checks for underruns

constexpr int endReportInterval = 50; // milliseconds

/// The minimum time for which the end is reported, in milliseconds, from the end and from loading.
constexpr qint64 endHoldAfterEnd = 100;
constexpr qint64 endHoldAfterStart = 600;

/// Past the end of any file, in seconds, and still representable in frames.
constexpr double longestFile = 1e9;

/// Positions this close are the same frame.
constexpr double frameTolerance = 1.0 / mediaSampleRate;

} // namespace

struct MediaPlayer::TimeObserver {
    std::function<void(double)> block;
    QTimer timer;
    bool isActive = true;
};

MediaPlayer::MediaPlayer(MediaPlaybackThread& thread, const FileURL& item)
    : thread_(thread),
      item_(thread.setItem(item.path())),
      duration_(std::numeric_limits<double>::quiet_NaN()),
      hasFailed_(item.path().isEmpty()) {
    sinceItem_.start();
    endTimer_.setTimerType(Qt::PreciseTimer);
    endTimer_.setInterval(endReportInterval);
    connect(&supplyTimer_, &QTimer::timeout, this, &MediaPlayer::watchSupply);
    connect(&endTimer_, &QTimer::timeout, this, &MediaPlayer::repeatEnd);
    connect(&thread_, &MediaPlaybackThread::reported, this, &MediaPlayer::handle);
}

MediaPlayer::~MediaPlayer() {
    dropItem();
}

Subscription MediaPlayer::addPeriodicTimeObserver(double interval,
                                                  std::function<void(double)> block) {
    const auto observer = std::make_shared<TimeObserver>();
    observer->block = std::move(block);
    observer->timer.setTimerType(Qt::PreciseTimer);
    observer->timer.setInterval(std::max(1, qRound(interval * 1000)));
    connect(&observer->timer, &QTimer::timeout, this, [this, raw = observer.get()] {
        if (finishedSeek_ == latestSeek_)
            raw->block(position());
    });
    timeObservers_.push_back(observer);
    if (item_ != 0 && status_.value() == TimeControlStatus::Playing)
        observer->timer.start();
    if (finishedSeek_ == latestSeek_)
        observer->block(position());
    return Subscription([player = QPointer(this), observer] {
        observer->isActive = false;
        observer->timer.stop();
        if (player)
            std::erase(player->timeObservers_, observer);
    });
}

Subscription MediaPlayer::observePlayedToEnd(std::function<void()> handler) {
    const auto observer = std::make_shared<std::function<void()>>(std::move(handler));
    endObservers_.push_back(observer);
    return Subscription([player = QPointer(this), observer] {
        if (player)
            std::erase(player->endObservers_, observer);
    });
}

void MediaPlayer::play() {
    if (item_ == 0 || hasFailed_ || wantsToPlay_)
        return;
    wantsToPlay_ = true;
    thread_.setRunning(item_, true);
    settleStatusSoon();
}

void MediaPlayer::pause() {
    if (!wantsToPlay_)
        return;
    wantsToPlay_ = false;
    hasSound_ = false;
    hasRunDry_ = false;
    supplyTimer_.stop();
    endTimer_.stop();
    thread_.setRunning(item_, false);
    settleStatusSoon();
}

void MediaPlayer::dropItem() {
    pause();
    thread_.dropItem(std::exchange(item_, 0));
    isOpen_ = false;
    finishedSeek_ = latestSeek_;
    leaveEnd();
    runTimers(false);
}

void MediaPlayer::seek(double seconds) {
    if (item_ == 0 || hasFailed_)
        return;
    leaveEnd();
    seekTarget_ = std::isnan(seconds) ? 0 : std::clamp(seconds, 0.0, longestFile);
    thread_.seek(item_, ++latestSeek_, seekTarget_);
}

void MediaPlayer::setVolume(float volume) {
    thread_.setVolume(volume);
}

void MediaPlayer::handle(const PlaybackReport& report) {
    if (report.item != item_)
        return;
    switch (report.kind) {
    case PlaybackReport::Kind::Opened:
        isOpen_ = true;
        anchorFrame_ = report.frame;
        duration_.send(report.duration);
        if (latestSeek_ == 0)
            reportTime(0);
        break;
    case PlaybackReport::Kind::Failed:
        hasFailed_ = true;
        pause();
        break;
    case PlaybackReport::Kind::Started:
        hasSound_ = wantsToPlay_;
        if (hasSound_)
            supplyTimer_.start(supplyInterval);
        settleStatus();
        break;
    case PlaybackReport::Kind::Sought:
        finishSeek(report);
        break;
    case PlaybackReport::Kind::Scanned:
        if (!endPosition_)
            duration_.send(report.duration);
        break;
    case PlaybackReport::Kind::Ended:
        if (report.seek == latestSeek_ && hasSound_)
            reachEnd(report.position);
        break;
    case PlaybackReport::Kind::Lost:
        hasSound_ = false;
        settleStatus();
        break;
    case PlaybackReport::Kind::Unheard:
        pause();
        settleStatus();
        break;
    }
}

void MediaPlayer::finishSeek(const PlaybackReport& report) {
    if (report.seek != latestSeek_)
        return;
    finishedSeek_ = report.seek;
    anchorPosition_ = report.position;
    anchorFrame_ = report.frame;
    reportTime(seekTarget_);
    if (std::abs(report.position - seekTarget_) > frameTolerance)
        reportTime(report.position);
}

void MediaPlayer::reachEnd(double length) {
    endPosition_ = length;
    if (duration_.value() != length)
        duration_.send(length);
    sinceEnd_.start();
    endTimer_.start();
    reportTime(length);
}

void MediaPlayer::repeatEnd() {
    reportTime(position());
    const bool isOver =
        sinceEnd_.elapsed() >= endHoldAfterEnd && sinceItem_.elapsed() >= endHoldAfterStart;
    if (!isOver || !endTimer_.isActive())
        return;
    pause();
    settleStatus();
    for (const auto& observer : std::vector(endObservers_))
        (*observer)();
}

void MediaPlayer::leaveEnd() {
    endTimer_.stop();
    endPosition_.reset();
}

void MediaPlayer::settleStatusSoon() {
    QMetaObject::invokeMethod(this, &MediaPlayer::settleStatus, Qt::QueuedConnection);
}

void MediaPlayer::settleStatus() {
    const TimeControlStatus moving =
        hasSound_ ? TimeControlStatus::Playing : TimeControlStatus::Waiting;
    const TimeControlStatus status = wantsToPlay_ ? moving : TimeControlStatus::Paused;
    if (status == status_.value())
        return;
    runTimers(item_ != 0 && status == TimeControlStatus::Playing);
    if (finishedSeek_ == latestSeek_)
        reportTime(position());
    status_.send(status);
}

void MediaPlayer::runTimers(bool running) {
    for (const auto& observer : timeObservers_) {
        if (running)
            observer->timer.start();
        else
            observer->timer.stop();
    }
}

/// Reports an underrun and its end.
void MediaPlayer::watchSupply() {
    const bool isDry = thread_.hasRunDry();
    if (isDry == hasRunDry_)
        return;
    hasRunDry_ = isDry;
    hasSound_ = !isDry;
    settleStatus();
}

void MediaPlayer::reportTime(double seconds) {
    if (item_ == 0)
        return;
    for (const auto& observer : std::vector(timeObservers_)) {
        if (observer->isActive)
            observer->block(seconds);
    }
}

double MediaPlayer::position() const {
    if (!isOpen_)
        return 0;
    if (endPosition_)
        return *endPosition_;
    const std::uint64_t heard = thread_.heardFrames();
    const std::uint64_t played = heard > anchorFrame_ ? heard - anchorFrame_ : 0;
    return anchorPosition_ + static_cast<double>(played) / mediaSampleRate;
}

} // namespace tamsy
