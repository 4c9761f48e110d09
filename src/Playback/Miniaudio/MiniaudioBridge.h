#pragma once

#include <optional>
#include <string_view>

namespace tamsy {

class FileURL;

/// One open file on one output device. Made by `ma_createPlayer`, ended by `ma_destroyPlayer`; its
/// caller owns it and calls the functions below on one thread, the interface thread. Stopped when
/// fresh and after `ma_stop`, else playing or paused.
///
/// The device's own thread pulls frames from the decoder, which keeps them ready in memory. Opening
/// and seeking wait 50 ms for a slow file; then they have succeeded for the time being, and the
/// player is waiting. While it waits, and wherever the file owes frames, a running device plays
/// silence that doesn't count; `ma_lookAtFileRaw` tells.
/// A device whose sound server doesn't answer is waited for on a thread of its own: the caller goes
/// on after 150 ms while it is opened or started, and after 80 ms while it stops. Opening fails
/// after two seconds; a late start counts as a lost output. There is no end event: at the end of
/// the file the device goes on playing silence and the position goes on rising past the duration.
struct BridgePlayer;

/// What a player is doing.
struct BridgeState {
    double durationSeconds = 0; // 0 while unknown; corrected if the file ends earlier
    double positionSeconds = 0; // output produced since the last seek or stop, as far as heard
    bool isPlaying = false;     // whether the device was started and not stopped since
};

/// Why a call failed.
struct BridgeError {
    std::string_view domain; // "miniaudio"
    int code = 0;            // the library's result code
    std::string_view description;
};

/// Where the functions report a failure, unless it is null.
using BridgeErrorOut = std::optional<BridgeError>*;

// A null handle is always allowed: the result is false, zero or nothing.

/// Always true.
[[nodiscard]] bool ma_isAvailable();

/// Opens the file and the default output device, stopped. The output is always stereo 32-bit float
/// at 48,000 Hz. If the file isn't open after 50 ms, opening continues in the background.
/// @return the handle, or null with "Failed to open audio file" or "Failed to init audio device".
[[nodiscard]] BridgePlayer* ma_createPlayer(const FileURL& url, BridgeErrorOut error);

/// Destroys the device, then the decoder, then the player.
void ma_destroyPlayer(BridgePlayer* player);

/// Starts the device. False for a null handle or with "Failed to start device".
bool ma_play(BridgePlayer* player, BridgeErrorOut error);

/// Stops the device. Decoder and position stay, so that `ma_play` resumes.
void ma_pause(BridgePlayer* player);

/// Stops the device and returns to the first frame.
void ma_stop(BridgePlayer* player);

/// Seeks to `seconds`; negative values count as 0, and past the end only silence follows. A playing
/// device is stopped meanwhile and started again. False for a null handle or with "Failed to seek":
/// then the position is unchanged, and the device, still reported as playing, stays stopped until a
/// seek succeeds or until `ma_pause` and `ma_play`.
bool ma_seek(BridgePlayer* player, double seconds, BridgeErrorOut error);

/// Never waits for the device.
[[nodiscard]] BridgeState ma_getState(const BridgePlayer* player);

// The same for a caller with an untyped handle.

[[nodiscard]] void* ma_createPlayerRaw(const FileURL& url, BridgeErrorOut error);
void ma_destroyPlayerRaw(void* player);
bool ma_playRaw(void* player, BridgeErrorOut error);
void ma_pauseRaw(void* player);
void ma_stopRaw(void* player);
bool ma_seekRaw(void* player, double seconds, BridgeErrorOut error);

/// Writes each part of the state whose pointer isn't null.
void ma_getStateRaw(const void* player, double* durationSeconds, double* positionSeconds,
                    bool* isPlaying);

/// The state of a player's file.
enum class BridgeFile {
    Ready,
    Waiting,   // frames are owed, or the device is being opened
    NotOpened, // opening file or device has failed after all: the player can only be destroyed
    NotSought, // a seek has failed after all; told once, the position is what it was before
};

/// Call this regularly while a player waits. The error is that of the call that failed.
[[nodiscard]] BridgeFile ma_lookAtFileRaw(void* player, BridgeErrorOut error);

/// Whether the device has been opened by now.
[[nodiscard]] bool ma_hasDeviceRaw(void* player);

/// How a playing player's output is doing. A lost one is replaced as soon as there is another, and
/// the sound goes on where it was.
enum class BridgeOutput {
    There,
    Lost,    // nothing has been heard for two seconds
    GivenUp, // nor within a minute: only `ma_play` starts it again
};

/// Never waits for the device.
[[nodiscard]] BridgeOutput ma_lookAtOutputRaw(const void* player);

/// Sets the linear gain, clamped to 0 to 1; a new player has 0.5.
void ma_setVolumeRaw(void* player, float volume);

} // namespace tamsy
