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
    double durationSeconds = 0; // 0 when it can't be told yet; corrected at an end before it
    double positionSeconds = 0; // output produced since the last seek or stop, as far as heard
    bool isPlaying = false;     // the device was started and not stopped since
};

/// Why a call failed.
struct BridgeError {
    std::string_view domain; // "miniaudio"
    int code = 0;            // the library's result code
    std::string_view description;
};

/// The functions report a failure here, unless it is null.
using BridgeErrorOut = std::optional<BridgeError>*;

// A null handle is harmless everywhere: the result is false, zero or nothing.

/// Always true.
[[nodiscard]] bool ma_isAvailable();

/// Opens the file, by its bytes, and the default output device, not started. Whatever the file
/// holds comes out as stereo 32-bit float at 48,000 Hz. A file that isn't open after 50 ms is
/// opened on.
/// @return the handle, or null with "Failed to open audio file" or "Failed to init audio device".
[[nodiscard]] BridgePlayer* ma_createPlayer(const FileURL& url, BridgeErrorOut error);

/// Ends the device, then the decoder, then frees the record.
void ma_destroyPlayer(BridgePlayer* player);

/// Starts the device. False for a null handle or with "Failed to start device".
bool ma_play(BridgePlayer* player, BridgeErrorOut error);

/// Stops the device; decoder and position stay, so that `ma_play` resumes.
void ma_pause(BridgePlayer* player);

/// Stops the device and goes back to the first frame.
void ma_stop(BridgePlayer* player);

/// Moves to `seconds`; below 0 counts as 0, and at or beyond the end nothing but silence follows.
/// A playing device is stopped meanwhile and started again. False for a null handle or with
/// "Failed to seek": the position is unchanged then, and the device, still called playing, stays
/// stopped until a seek that works or until `ma_pause` and `ma_play`.
bool ma_seek(BridgePlayer* player, double seconds, BridgeErrorOut error);

/// Never waits for the device.
[[nodiscard]] BridgeState ma_getState(const BridgePlayer* player);

// The same for a caller that holds the handle as an untyped pointer.

[[nodiscard]] void* ma_createPlayerRaw(const FileURL& url, BridgeErrorOut error);
void ma_destroyPlayerRaw(void* player);
bool ma_playRaw(void* player, BridgeErrorOut error);
void ma_pauseRaw(void* player);
void ma_stopRaw(void* player);
bool ma_seekRaw(void* player, double seconds, BridgeErrorOut error);

/// Writes each part of the state whose pointer isn't null.
void ma_getStateRaw(const void* player, double* durationSeconds, double* positionSeconds,
                    bool* isPlaying);

/// How a player's file is doing.
enum class BridgeFile {
    Ready,
    Waiting,   // frames are owed, or the device is being opened
    NotOpened, // opening file or device has failed after all: the player can only be destroyed
    NotSought, // a seek has failed after all; told once, the position is what it was before
};

/// Asked from time to time while a player waits. The error is that of the call that failed.
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

/// Sets the linear gain, held between 0 and 1; a new player has 0.5.
void ma_setVolumeRaw(void* player, float volume);

} // namespace tamsy
