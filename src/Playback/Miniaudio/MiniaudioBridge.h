#pragma once

#include <optional>
#include <string_view>

namespace tamsy {

class FileURL;

/// One open file on one output device. Created by `ma_createPlayer`, destroyed by
/// `ma_destroyPlayer`. The caller owns it and calls the functions below on the interface thread. It
/// is stopped initially and after `ma_stop`, otherwise playing or paused.
///
/// The device's thread pulls frames that the decoder keeps ready in memory. Opening and seeking
/// wait 40 ms for a slow file; after that they report success, and the player waits. While it
/// waits, and during an underrun, a running device plays silence that doesn't count;
/// `ma_getFileStateRaw` reports both, and late failures.
///
/// A slow sound server delays the caller by at most 80 ms when the device is opened or started, and
/// by 60 ms when it stops or is closed. Opening fails after two seconds; a start that takes longer
/// counts as a lost output. There is no end event: after the end of the file the device plays
/// silence, and the position rises past the duration.
struct BridgePlayer;

/// What a player is doing.
struct BridgeState {
    double durationSeconds = 0; // 0 while unknown; corrected if the file ends earlier
    double positionSeconds = 0; // about what is heard; rises past the end
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
/// at 48,000 Hz. If the file isn't open after 40 ms, opening continues in the background.
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

/// Creates a player whose file is opened ahead, in the background, without a device. It is opened
/// by `ma_openPreparedRaw` or destroyed; nothing else may be called before.
[[nodiscard]] void* ma_preparePlayerRaw(const FileURL& url);

/// Completes a prepared player as `ma_createPlayer` does. False with an error: then it can only be
/// destroyed.
[[nodiscard]] bool ma_openPreparedRaw(void* player, BridgeErrorOut error);
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
    Waiting,   // frames are missing, or the device is still being opened
    NotOpened, // file or device couldn't be opened: the player can only be destroyed
    NotSought, // a seek failed later, and the position is restored; reported once
};

/// Call this regularly while a player waits. The error is that of the call that failed.
[[nodiscard]] BridgeFile ma_getFileStateRaw(void* player, BridgeErrorOut error);

/// Whether the device has been opened, even if it was lost since.
[[nodiscard]] bool ma_hasDeviceRaw(void* player);

/// The state of a playing player's output. A lost device is replaced as soon as there is another;
/// then playback resumes where it was.
enum class BridgeOutput {
    There,
    Lost,    // no device for two seconds
    GivenUp, // no device for a minute: it is no longer searched for, until `ma_play`
};

/// Never waits for the device.
[[nodiscard]] BridgeOutput ma_getOutputStateRaw(const void* player);

/// Sets the linear gain, clamped to 0 to 1; a new player has 0.5.
void ma_setVolumeRaw(void* player, float volume);

} // namespace tamsy
