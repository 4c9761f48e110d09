#include "Playback/Miniaudio/MiniaudioPlaybackEngine.h"

#include "Playback/Miniaudio/MiniaudioBridge.h"
#include "Utils/FileURL.h"
#include "Utils/PlaybackLogger.h"

#include <QTimerEvent>

#include <algorithm>
#include <cmath>
#include <limits>

namespace tamsy {
namespace {

constexpr double minUpdateInterval = 0.05; // seconds
constexpr int waitInterval = 20;           // milliseconds between checks of a slow file
constexpr int outputInterval = 200;        // the same for a lost output

void logFailure(QLatin1String call, const std::optional<BridgeError>& error) {
    const std::string_view text = error ? error->description : "unknown";
    PlaybackLogger::log(QLatin1String("[MINIAUDIO] ") + call + QLatin1String(" error: ") +
                        QLatin1String(text.data(), static_cast<qsizetype>(text.size())));
}

} // namespace

void MiniaudioPlaybackEngine::HandleDeleter::operator()(void* player) const {
    ma_destroyPlayerRaw(player);
}

MiniaudioPlaybackEngine::~MiniaudioPlaybackEngine() {
    MiniaudioPlaybackEngine::stop();
}

void MiniaudioPlaybackEngine::load(const FileURL& url) {
    stop();
    if (!ma_isAvailable()) {
        PlaybackLogger::log(QStringLiteral("[MINIAUDIO] not available"));
        return;
    }
    std::optional<BridgeError> error;
    handle_ = takePrepared(url);
    if (!handle_)
        handle_.reset(ma_createPlayerRaw(url, &error));
    if (!handle_) {
        logFailure(QLatin1String("create"), error);
        return;
    }
    ma_setVolumeRaw(handle_.get(), currentVolume_);
    sendState();
    waitForFile();
}

void MiniaudioPlaybackEngine::prepare(const FileURL& url) {
    prepared_.reset(url.isEmpty() ? nullptr : ma_preparePlayerRaw(url));
    preparedURL_ = url;
}

/// The prepared player, if it is this file's. One that failed is dropped: the file may be back.
MiniaudioPlaybackEngine::Handle MiniaudioPlaybackEngine::takePrepared(const FileURL& url) {
    Handle prepared = std::move(prepared_);
    const bool isUsable = preparedURL_ == url && ma_openPreparedRaw(prepared.get(), nullptr);
    return isUsable ? std::move(prepared) : nullptr;
}

void MiniaudioPlaybackEngine::play() {
    if (!handle_)
        return;
    if (!ma_hasDeviceRaw(handle_.get())) {
        playsWhenReady_ = true;
        return;
    }
    playsWhenReady_ = false;
    std::optional<BridgeError> error;
    if (!ma_playRaw(handle_.get(), &error)) {
        logFailure(QLatin1String("play"), error);
        return;
    }
    outputTimer_.stop();
    isPlayingSubject_.send(true);
    startTimer();
}

void MiniaudioPlaybackEngine::pause() {
    if (!handle_)
        return;
    ma_pauseRaw(handle_.get());
    playsWhenReady_ = false;
    isPlayingSubject_.send(false);
    timer_.stop();
    outputTimer_.stop();
}

void MiniaudioPlaybackEngine::stop() {
    if (handle_) {
        ma_stopRaw(handle_.get());
        handle_.reset();
    }
    playsWhenReady_ = false;
    isPlayingSubject_.send(false);
    currentTimeSubject_.send(0);
    timer_.stop();
    waitTimer_.stop();
    outputTimer_.stop();
}

void MiniaudioPlaybackEngine::seek(double seconds) {
    if (!handle_)
        return;
    std::optional<BridgeError> error;
    if (ma_seekRaw(handle_.get(), seconds, &error)) {
        sendState();
        waitForFile();
        return;
    }
    logFailure(QLatin1String("seek"), error);
    returnToPosition();
}

/// A failed seek leaves a playing device stopped and the decoder at any position: with a wrong
/// header, the player would stay silent while it reports that it plays.
void MiniaudioPlaybackEngine::returnToPosition() {
    double position = 0;
    bool playing = false;
    ma_getStateRaw(handle_.get(), nullptr, &position, &playing);
    if (!ma_seekRaw(handle_.get(), position, nullptr) && playing)
        pause();
}

void MiniaudioPlaybackEngine::setVolume(float volume) {
    currentVolume_ = volume;
    ma_setVolumeRaw(handle_.get(), volume);
}

void MiniaudioPlaybackEngine::setUpdateInterval(double seconds) {
    updateInterval_ = seconds > minUpdateInterval ? seconds : minUpdateInterval;
    if (timer_.isActive())
        startTimer();
}

void MiniaudioPlaybackEngine::startTimer() {
    constexpr double longest = std::numeric_limits<int>::max(); // milliseconds
    const double period = std::round(std::min(updateInterval_ * 1000, longest));
    timer_.start(static_cast<int>(period), Qt::PreciseTimer, this);
}

void MiniaudioPlaybackEngine::sendState() {
    double duration = 0;
    double position = 0;
    bool playing = false;
    ma_getStateRaw(handle_.get(), &duration, &position, &playing);
    durationSubject_.send(duration);
    currentTimeSubject_.send(position);
    isPlayingSubject_.send(playing);
}

/// While the output is lost, playback counts as paused. It resumes once there is another, unless
/// the bridge gives up before.
void MiniaudioPlaybackEngine::checkOutput() {
    const bool wasLost = outputTimer_.isActive();
    switch (ma_getOutputStateRaw(handle_.get())) {
    case BridgeOutput::There:
        if (!wasLost)
            return;
        outputTimer_.stop();
        isPlayingSubject_.send(true);
        startTimer();
        break;
    case BridgeOutput::Lost:
        if (wasLost)
            return;
        timer_.stop();
        outputTimer_.start(outputInterval, this);
        isPlayingSubject_.send(false);
        break;
    case BridgeOutput::GivenUp:
        pause();
        break;
    }
}

void MiniaudioPlaybackEngine::timerEvent(QTimerEvent* event) {
    if (event->timerId() == timer_.timerId())
        tick();
    else if (event->timerId() == outputTimer_.timerId())
        checkOutput();
    else if (event->timerId() == waitTimer_.timerId() && isFileReady())
        resume();
}

void MiniaudioPlaybackEngine::tick() {
    double duration = 0;
    double position = 0;
    bool playing = false;
    ma_getStateRaw(handle_.get(), nullptr, nullptr, &playing);
    if (playing && !isFileReady()) {
        if (!handle_)
            return;
        ma_pauseRaw(handle_.get());
        timer_.stop();
        playsWhenReady_ = true;
        waitTimer_.start(waitInterval, this);
    }
    ma_getStateRaw(handle_.get(), &duration, &position, &playing);
    currentTimeSubject_.send(position);
    isPlayingSubject_.send(playing);
    if (duration > 0)
        durationSubject_.send(duration);
    if (playing)
        checkOutput();
}

/// Watches a file that opens or seeks more slowly than its caller waits.
void MiniaudioPlaybackEngine::waitForFile() {
    if (!isFileReady() && handle_)
        waitTimer_.start(waitInterval, this);
}

/// Handles late failures: a file that can't be opened is like a failed load; after a failed seek
/// playback continues where it was.
bool MiniaudioPlaybackEngine::isFileReady() {
    std::optional<BridgeError> error;
    switch (ma_getFileStateRaw(handle_.get(), &error)) {
    case BridgeFile::Ready:
        return true;
    case BridgeFile::Waiting:
        return false;
    case BridgeFile::NotOpened:
        logFailure(QLatin1String("create"), error);
        stop();
        return false;
    case BridgeFile::NotSought:
        logFailure(QLatin1String("seek"), error);
        returnToPosition();
        sendState();
        return false;
    }
    return true;
}

/// The file is ready: playback continues, and the duration is known.
void MiniaudioPlaybackEngine::resume() {
    waitTimer_.stop();
    double duration = 0;
    ma_getStateRaw(handle_.get(), &duration, nullptr, nullptr);
    if (duration > 0 && duration != durationSubject_.value())
        durationSubject_.send(duration);
    if (playsWhenReady_)
        play();
}

} // namespace tamsy
