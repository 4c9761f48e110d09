#include "Playback/Miniaudio/MiniaudioBridge.h"

#include "Playback/Miniaudio/AudioDecoder.h"
#include "Playback/Miniaudio/DecodeAhead.h"
#include "Playback/Miniaudio/MiniaudioDevice.h"
#include "Playback/Output/OutputKeeper.h"
#include "Utils/FileURL.h"

#include <miniaudio.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <memory>
#include <span>

namespace tamsy {

namespace {

/// The file's frames with the volume applied, for the device.
struct BridgeSound final : AudioRenderer {
    explicit BridgeSound(const FileURL& url) : file(url) {}

    void render(std::span<StereoFrame> frames) noexcept override;
    void count(double position, std::size_t frames, std::size_t wanted);
    void correctLength(double position);

    DecodeAhead file; // has the duration too
    std::atomic<double> positionSeconds = 0;
    std::atomic<float> volume = 0.5F;
    std::atomic<ma_result> deviceResult = MA_TIMEOUT;
};

} // namespace

struct BridgePlayer {
    using Clock = std::chrono::steady_clock;

    explicit BridgePlayer(const FileURL& url)
        : sound(std::make_shared<BridgeSound>(url)),
          output(sound, [sound = sound.get()](AudioRenderer& renderer, bool maySilent) {
              return MiniaudioDevice::open(renderer, maySilent, sound->deviceResult);
          }) {}

    /// How long a sound server may take to open the device.
    static constexpr auto openLimit = std::chrono::seconds(2);

    const std::shared_ptr<BridgeSound> sound; // also the device thread's, which may outlive this
    OutputKeeper output;
    std::atomic<bool> isPlaying = false;
    Clock::time_point openDeadline; // for the device
    // Operations that were reported as done but aren't yet.
    bool isOpening = false;
    bool isDeviceOpening = true;
    bool isSeeking = false;
    double soughtFrom = 0; // seconds, the position to restore if the seek fails
    double anchor = 0;     // seconds, the target of the latest seek or stop
};

namespace {

void fail(BridgeErrorOut error, ma_result code, std::string_view description) {
    if (error != nullptr)
        *error = BridgeError{"miniaudio", code, description};
}

/// Corrects the duration when the end is reached, before the position gets there, so that a file
/// with an unknown or too long duration ends like any other.
void BridgeSound::correctLength(double position) {
    constexpr double tolerance = 0.05; // seconds; headers round
    const double told = file.length();
    const double end = file.endPosition();
    const double length = end > 0 ? end : position;
    if (told == 0 || length < told - tolerance)
        file.setLength(length);
}

/// Counts a callback's output from `position` on, unless a seek has moved the position meanwhile:
/// a device that stops slowly still plays then. Silence after the end counts, silence during an
/// underrun doesn't.
void BridgeSound::count(double position, std::size_t frames, std::size_t wanted) {
    const auto rate = static_cast<double>(AudioDecoder::sampleRate);
    const bool hasEnded = frames < wanted && file.hasEnded();
    if (hasEnded)
        correctLength(position + static_cast<double>(frames) / rate);
    positionSeconds.compare_exchange_strong(
        position, position + static_cast<double>(hasEnded ? wanted : frames) / rate);
}

void BridgeSound::render(std::span<StereoFrame> frames) noexcept {
    const double position = positionSeconds;
    const std::size_t filled = file.read(frames);
    const float gain = volume.load(std::memory_order_relaxed);
    if (gain != 1.0F) {
        for (StereoFrame& frame : frames.first(filled))
            frame = {frame.left * gain, frame.right * gain};
    }
    std::ranges::transform(frames.first(filled), frames.begin(), limited);
    std::ranges::fill(frames.subspan(filled), StereoFrame());
    count(position, filled, frames.size());
}

void setPosition(BridgePlayer& player, double seconds) {
    player.anchor = seconds;
    player.sound->positionSeconds = seconds;
}

/// The approximate position that is heard: without the frames that the device has buffered.
double heardPosition(const BridgePlayer& player) {
    const double held = static_cast<double>(player.output.heldFrames()) / AudioDecoder::sampleRate;
    return std::max(player.anchor, player.sound->positionSeconds - held);
}

/// Whether the device hasn't been opened yet; one that is lost later doesn't count.
bool isDeviceOpening(BridgePlayer& player) {
    player.isDeviceOpening = player.isDeviceOpening && !player.output.isOpen();
    return player.isDeviceOpening;
}

/// Whether opening the device has failed or takes too long.
bool hasNoDevice(BridgePlayer& player) {
    const bool isDone = player.output.wait(std::chrono::milliseconds(0));
    return isDeviceOpening(player) && (isDone || BridgePlayer::Clock::now() > player.openDeadline);
}

/// Starts the device; false if that fails. A slow one is started in the background, which counts as
/// success.
bool startDevice(BridgePlayer& player) {
    player.sound->file.setRunning(true);
    player.output.start();
    return !player.output.wait(OutputKeeper::startTimeout) ||
           player.output.state() != OutputKeeper::State::Lost;
}

/// Waits for the device to stop; false if it takes longer than the timeout and stops later.
bool waitForDevice(const BridgePlayer& player) {
    return player.output.wait(OutputKeeper::holdTimeout);
}

/// Waits for the file, then opens the device; what takes longer is left to the background.
bool openPlayer(BridgePlayer& player, BridgeErrorOut error) {
    const auto start = BridgePlayer::Clock::now();
    const std::optional<ma_result> opened = player.sound->file.waitUntilOpened();
    if (opened.value_or(MA_SUCCESS) != MA_SUCCESS) {
        fail(error, *opened, "Failed to open audio file");
        return false;
    }
    player.isOpening = !opened;
    player.openDeadline = start + BridgePlayer::openLimit;
    player.output.open();
    static_cast<void>(player.output.wait(std::chrono::ceil<std::chrono::milliseconds>(
        start + OutputKeeper::openTimeout - BridgePlayer::Clock::now())));
    if (hasNoDevice(player)) {
        fail(error, player.sound->deviceResult, "Failed to init audio device");
        return false;
    }
    return true;
}

BridgePlayer* asPlayer(void* player) {
    return static_cast<BridgePlayer*>(player);
}

} // namespace

bool ma_isAvailable() {
    return true;
}

BridgePlayer* ma_createPlayer(const FileURL& url, BridgeErrorOut error) {
    auto player = std::make_unique<BridgePlayer>(url);
    return openPlayer(*player, error) ? player.release() : nullptr;
}

void ma_destroyPlayer(BridgePlayer* player) {
    // The device is destroyed first, since it reads the decoder.
    const std::unique_ptr<BridgePlayer> owned(player);
}

bool ma_play(BridgePlayer* player, BridgeErrorOut error) {
    if (player == nullptr)
        return false;
    if (!startDevice(*player)) {
        player->output.hold();
        player->sound->file.setRunning(false);
        fail(error, player->sound->deviceResult, "Failed to start device");
        return false;
    }
    player->isPlaying = true;
    return true;
}

void ma_pause(BridgePlayer* player) {
    if (player == nullptr)
        return;
    player->output.hold();
    static_cast<void>(waitForDevice(*player));
    player->sound->file.setRunning(false);
    player->isPlaying = false;
}

void ma_stop(BridgePlayer* player) {
    if (player == nullptr)
        return;
    player->output.flush();
    player->sound->file.seek(0, 0, waitForDevice(*player));
    player->isSeeking = false;
    setPosition(*player, 0);
    player->sound->file.setRunning(false);
    player->isPlaying = false;
}

bool ma_seek(BridgePlayer* player, double seconds, BridgeErrorOut error) {
    if (player == nullptr)
        return false;
    BridgeSound& sound = *player->sound;
    const double target = seconds > 0 ? seconds : 0; // NaN counts as 0 too
    player->output.flush();
    const bool isStopped = waitForDevice(*player);
    if (!player->isSeeking)
        player->soughtFrom = heardPosition(*player);
    sound.file.seek(target, player->soughtFrom, isStopped);
    const std::optional<ma_result> result = sound.file.waitUntilSought();
    player->isSeeking = !result;
    if (result.value_or(MA_SUCCESS) != MA_SUCCESS) {
        setPosition(*player, player->soughtFrom);
        fail(error, *result, "Failed to seek");
        return false;
    }
    setPosition(*player, target);
    if (player->isPlaying && isStopped)
        static_cast<void>(startDevice(*player));
    else if (player->isPlaying)
        player->output.start();
    return true;
}

BridgeState ma_getState(const BridgePlayer* player) {
    if (player == nullptr)
        return {};
    return {player->sound->file.length(), heardPosition(*player), player->isPlaying};
}

void* ma_createPlayerRaw(const FileURL& url, BridgeErrorOut error) {
    return ma_createPlayer(url, error);
}

void* ma_preparePlayerRaw(const FileURL& url) {
    return std::make_unique<BridgePlayer>(url).release();
}

bool ma_openPreparedRaw(void* player, BridgeErrorOut error) {
    return player != nullptr && openPlayer(*asPlayer(player), error);
}

void ma_destroyPlayerRaw(void* player) {
    ma_destroyPlayer(asPlayer(player));
}

bool ma_playRaw(void* player, BridgeErrorOut error) {
    return ma_play(asPlayer(player), error);
}

void ma_pauseRaw(void* player) {
    ma_pause(asPlayer(player));
}

void ma_stopRaw(void* player) {
    ma_stop(asPlayer(player));
}

bool ma_seekRaw(void* player, double seconds, BridgeErrorOut error) {
    return ma_seek(asPlayer(player), seconds, error);
}

void ma_getStateRaw(const void* player, double* durationSeconds, double* positionSeconds,
                    bool* isPlaying) {
    const BridgeState state = ma_getState(static_cast<const BridgePlayer*>(player));
    if (durationSeconds != nullptr)
        *durationSeconds = state.durationSeconds;
    if (positionSeconds != nullptr)
        *positionSeconds = state.positionSeconds;
    if (isPlaying != nullptr)
        *isPlaying = state.isPlaying;
}

BridgeFile ma_getFileStateRaw(void* handle, BridgeErrorOut error) {
    BridgePlayer* player = asPlayer(handle);
    if (player == nullptr)
        return BridgeFile::Ready;
    if (player->isOpening) {
        const std::optional<ma_result> opened = player->sound->file.opened();
        player->isOpening = !opened;
        if (opened.value_or(MA_SUCCESS) != MA_SUCCESS) {
            fail(error, *opened, "Failed to open audio file");
            return BridgeFile::NotOpened;
        }
    }
    if (hasNoDevice(*player)) {
        fail(error, player->sound->deviceResult, "Failed to init audio device");
        return BridgeFile::NotOpened;
    }
    if (player->isSeeking) {
        const std::optional<ma_result> sought = player->sound->file.sought();
        player->isSeeking = !sought;
        if (sought.value_or(MA_SUCCESS) != MA_SUCCESS) {
            setPosition(*player, player->soughtFrom);
            fail(error, *sought, "Failed to seek");
            return BridgeFile::NotSought;
        }
    }
    const bool isWaiting = player->sound->file.isWaiting() || isDeviceOpening(*player);
    return isWaiting ? BridgeFile::Waiting : BridgeFile::Ready;
}

bool ma_hasDeviceRaw(void* player) {
    return player != nullptr && !isDeviceOpening(*asPlayer(player));
}

BridgeOutput ma_getOutputStateRaw(const void* player) {
    if (player == nullptr)
        return BridgeOutput::There;
    switch (static_cast<const BridgePlayer*>(player)->output.state()) {
    case OutputKeeper::State::Lost:
        return BridgeOutput::Lost;
    case OutputKeeper::State::GivenUp:
        return BridgeOutput::GivenUp;
    default:
        return BridgeOutput::There;
    }
}

void ma_setVolumeRaw(void* player, float volume) {
    if (player != nullptr)
        asPlayer(player)->sound->volume.store(std::clamp(volume, 0.0F, 1.0F),
                                              std::memory_order_relaxed);
}

} // namespace tamsy
