#pragma once

#include "Playback/Output/AudioOutput.h"

#include <atomic>
#include <memory>
#include <span>

namespace tamsy {

/// An open file that is decoded to stereo frames. One thread at a time.
class MediaDecoder {
  public:
    struct Block {
        std::span<const StereoFrame> frames; // valid until the next call
        bool ended = false;                  // nothing follows `frames`
    };

    virtual ~MediaDecoder() = default;

    /// The duration in seconds; not finite if unknown. An estimate while `scanMore` has work left.
    [[nodiscard]] virtual double duration() const = 0;

    /// The next frames. The work per call is limited, so it may return none before the end.
    [[nodiscard]] virtual Block decode() = 0;

    /// Seeks to `seconds`, exact to a frame, or to the end of the file if that is earlier. Returns
    /// the position in seconds of the next frame that `decode` returns.
    virtual double seek(double seconds) = 0;

    /// Does a step of the work that opening a slow file has left; false once nothing is left.
    virtual bool scanMore() { return false; }
};

/// The media player's libraries. They are large, so they are in a module that is loaded with the
/// first file that needs it.
class MediaBackend {
  public:
    virtual ~MediaBackend() = default;

    /// Opens the local file at `path` (bytes). Reads fail once `abandoned` is true; it must outlive
    /// the decoder. Null if the file has no sound that can be played.
    [[nodiscard]] virtual std::unique_ptr<MediaDecoder>
    openFile(const char* path, const std::atomic<bool>& abandoned) = 0;

    /// Opens the default device. If there is none: a silent output if `maySilent`, otherwise null.
    /// `renderer` must outlive the output.
    [[nodiscard]] virtual std::unique_ptr<AudioOutput> openOutput(AudioRenderer& renderer,
                                                                  bool maySilent) = 0;
};

/// The module's only entry point, by the name below. The result lives as long as the process.
using MediaBackendEntry = MediaBackend* (*)();
inline constexpr const char* mediaBackendEntryName = "tamsyMediaBackend";

} // namespace tamsy
