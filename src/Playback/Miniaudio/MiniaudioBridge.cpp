#include "Playback/Miniaudio/MiniaudioBridge.h"

#include "Playback/Miniaudio/AudioDecoder.h"
#include "Playback/Miniaudio/DecodeAhead.h"
#include "Playback/Output/SoundServerNoise.h"
#include "Utils/FileURL.h"

#include <miniaudio.h>

#include <algorithm>
#include <atomic>
#include <memory>
#include <mutex>
#include <span>

namespace tamsy {

struct BridgePlayer {
    explicit BridgePlayer(const FileURL& url) : file(url) {}

    DecodeAhead file; // knows the duration, too
    ma_device device{};
    std::atomic<bool> isPlaying = false;
    std::atomic<double> positionSeconds = 0;
    std::atomic<float> volume = 0.5F;
    // What the caller has been told was done and isn't yet; its own thread's.
    bool isOpening = false;
    bool isSeeking = false;
    double soughtFrom = 0; // seconds
};

namespace {

void fail(BridgeErrorOut error, ma_result code, std::string_view description) {
    if (error != nullptr)
        *error = BridgeError{"miniaudio", code, description};
}

/// A file shows its true length at its end, before the position does, so that one which told none
/// or too much ends as any other does.
void correctLength(BridgePlayer& player, double position) {
    constexpr double tolerance = 0.05; // seconds by which a header may round
    const double told = player.file.length();
    const double end = player.file.endPosition();
    const double length = end > 0 ? end : position;
    if (told == 0 || length < told - tolerance)
        player.file.setLength(length);
}

/// Counts what a callback has put out. The silence after the end counts, the silence of a file that
/// owes frames doesn't.
void count(BridgePlayer& player, std::size_t frames, std::size_t wanted) {
    const auto rate = static_cast<double>(AudioDecoder::sampleRate);
    const double position = player.positionSeconds.load(std::memory_order_relaxed);
    const bool hasEnded = frames < wanted && player.file.hasEnded();
    if (hasEnded)
        correctLength(player, position + static_cast<double>(frames) / rate);
    player.positionSeconds = position + static_cast<double>(hasEnded ? wanted : frames) / rate;
}

void ma_data_callback(ma_device* device, void* output, const void* /*input*/,
                      ma_uint32 frameCount) {
    auto* player = static_cast<BridgePlayer*>(device->pUserData);
    if (player == nullptr)
        return;
    const std::span<StereoFrame> frames(static_cast<StereoFrame*>(output), frameCount);
    const std::size_t filled = player->file.read(frames);
    const float volume = player->volume.load(std::memory_order_relaxed);
    if (volume != 1.0F) {
        for (StereoFrame& frame : frames.first(filled))
            frame = {frame.left * volume, frame.right * volume};
    }
    std::ranges::transform(frames.first(filled), frames.begin(), limited);
    std::ranges::fill(frames.subspan(filled), StereoFrame());
    count(*player, filled, frameCount);
}

ma_result openDevice(BridgePlayer& player) {
    static std::once_flag silenced;
    std::call_once(silenced, silenceSoundLibraries);
    ma_device_config config = ma_device_config_init(ma_device_type_playback);
    config.sampleRate = AudioDecoder::sampleRate;
    config.playback.format = AudioDecoder::format;
    config.playback.channels = AudioDecoder::channels;
    config.dataCallback = ma_data_callback;
    config.pUserData = &player;
    // With no list of backends and no context it goes through all of them until a device opens, and
    // ends with one that runs in real time without any sound card.
    return ma_device_init_ex(nullptr, 0, nullptr, &config, &player.device);
}

/// Starts the device. One that won't start has lost its sound server; a fresh one finds the server
/// that has come back, or another way out.
ma_result startDevice(BridgePlayer& player) {
    player.file.setRunning(true);
    if (ma_device_start(&player.device) == MA_SUCCESS)
        return MA_SUCCESS;
    ma_device_uninit(&player.device);
    const ma_result result = openDevice(player);
    return result == MA_SUCCESS ? ma_device_start(&player.device) : result;
}

/// Whether the device stands in for one that is missing.
bool isSilent(const ma_device& device) {
    return device.pContext != nullptr && device.pContext->backend == ma_backend_null;
}

/// Stops and ends the device, if there is one. A running device's end waits for its thread to wake
/// by itself, which it never does once the sound server has gone; stopping wakes it.
void closeDevice(BridgePlayer& player) {
    static_cast<void>(ma_device_stop(&player.device));
    ma_device_uninit(&player.device);
}

/// Gives the lost device's place to another, unless that is silent.
bool replaceDevice(BridgePlayer& player) {
    closeDevice(player);
    if (openDevice(player) != MA_SUCCESS)
        return false;
    if (!isSilent(player.device))
        return ma_device_start(&player.device) == MA_SUCCESS;
    closeDevice(player);
    return false;
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
    const std::optional<ma_result> opened = player->file.waitUntilOpened();
    if (opened.value_or(MA_SUCCESS) != MA_SUCCESS) {
        fail(error, *opened, "Failed to open audio file");
        return nullptr;
    }
    player->isOpening = !opened;
    if (const ma_result result = openDevice(*player); result != MA_SUCCESS) {
        fail(error, result, "Failed to init audio device");
        return nullptr;
    }
    return player.release();
}

void ma_destroyPlayer(BridgePlayer* player) {
    if (player == nullptr)
        return;
    const std::unique_ptr<BridgePlayer> owned(player);
    closeDevice(*owned); // first, as its thread reads the decoder
}

bool ma_play(BridgePlayer* player, BridgeErrorOut error) {
    if (player == nullptr)
        return false;
    // Where there was no sound at the start there may be by now.
    if (isSilent(player->device) && player->positionSeconds > 0)
        closeDevice(*player);
    if (const ma_result result = startDevice(*player); result != MA_SUCCESS) {
        fail(error, result, "Failed to start device");
        return false;
    }
    player->isPlaying = true;
    return true;
}

void ma_pause(BridgePlayer* player) {
    if (player == nullptr)
        return;
    static_cast<void>(ma_device_stop(&player->device));
    player->file.setRunning(false);
    player->isPlaying = false;
}

void ma_stop(BridgePlayer* player) {
    if (player == nullptr)
        return;
    static_cast<void>(ma_device_stop(&player->device));
    player->file.seek(0, 0);
    player->isSeeking = false;
    player->positionSeconds = 0;
    player->file.setRunning(false);
    player->isPlaying = false;
}

bool ma_seek(BridgePlayer* player, double seconds, BridgeErrorOut error) {
    if (player == nullptr)
        return false;
    const double target = seconds > 0 ? seconds : 0; // what isn't a number counts as 0, too
    const bool wasPlaying = player->isPlaying;
    if (wasPlaying)
        static_cast<void>(ma_device_stop(&player->device));
    if (!player->isSeeking)
        player->soughtFrom = player->positionSeconds;
    player->file.seek(target, player->soughtFrom);
    const std::optional<ma_result> result = player->file.waitUntilSought();
    player->isSeeking = !result;
    if (result.value_or(MA_SUCCESS) != MA_SUCCESS) {
        player->positionSeconds = player->soughtFrom;
        fail(error, *result, "Failed to seek");
        return false;
    }
    player->positionSeconds = target;
    if (wasPlaying && startDevice(*player) == MA_SUCCESS)
        player->isPlaying = true;
    return true;
}

BridgeState ma_getState(const BridgePlayer* player) {
    if (player == nullptr)
        return {};
    return {player->file.length(), player->positionSeconds, player->isPlaying};
}

void* ma_createPlayerRaw(const FileURL& url, BridgeErrorOut error) {
    return ma_createPlayer(url, error);
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

BridgeFile ma_lookAtFileRaw(void* handle, BridgeErrorOut error) {
    BridgePlayer* player = asPlayer(handle);
    if (player == nullptr)
        return BridgeFile::Ready;
    if (player->isOpening) {
        const std::optional<ma_result> opened = player->file.opened();
        player->isOpening = !opened;
        if (opened.value_or(MA_SUCCESS) != MA_SUCCESS) {
            fail(error, *opened, "Failed to open audio file");
            return BridgeFile::NotOpened;
        }
    }
    if (player->isSeeking) {
        const std::optional<ma_result> sought = player->file.sought();
        player->isSeeking = !sought;
        if (sought.value_or(MA_SUCCESS) != MA_SUCCESS) {
            player->positionSeconds = player->soughtFrom;
            fail(error, *sought, "Failed to seek");
            return BridgeFile::NotSought;
        }
    }
    return player->file.isWaiting() ? BridgeFile::Waiting : BridgeFile::Ready;
}

bool ma_replaceOutputRaw(void* player) {
    return player != nullptr && asPlayer(player)->isPlaying && replaceDevice(*asPlayer(player));
}

void ma_setVolumeRaw(void* player, float volume) {
    if (player != nullptr)
        asPlayer(player)->volume.store(std::clamp(volume, 0.0F, 1.0F), std::memory_order_relaxed);
}

} // namespace tamsy
