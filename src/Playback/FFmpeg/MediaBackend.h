#pragma once

#include "Playback/Output/AudioOutput.h"

#include <atomic>
#include <memory>
#include <span>

namespace tamsy {

/// One open file as a run of stereo frames. One thread at a time.
class MediaDecoder {
  public:
    struct Block {
        std::span<const StereoFrame> frames; // valid until the next call
        bool ended = false;                  // nothing comes after `frames`
    };

    virtual ~MediaDecoder() = default;

    /// Length in seconds as the file tells it; not finite when it doesn't. An estimate while
    /// `scanMore` has work left.
    [[nodiscard]] virtual double duration() const = 0;

    /// The next frames. The work of one call is bounded, so it may give none before the end.
    [[nodiscard]] virtual Block decode() = 0;

    /// Goes to `seconds`, exact to a frame, or to the end of the file if that comes first. Gives
    /// the position in seconds of the frame that `decode` gives next.
    virtual double seek(double seconds) = 0;

    /// Does a piece of what opening a slow file left for later; false once nothing is left.
    virtual bool scanMore() { return false; }
};

/// The libraries behind the media player. They are large, so they live in a module that is loaded
/// with the first file that needs it.
class MediaBackend {
  public:
    virtual ~MediaBackend() = default;

    /// Opens the local file at `path`, given in the bytes of its name. Reading stops early once
    /// `abandoned` is true; it must outlive the decoder. Nothing if it holds no sound that can be
    /// played.
    [[nodiscard]] virtual std::unique_ptr<MediaDecoder>
    openFile(const char* path, const std::atomic<bool>& abandoned) = 0;

    /// Opens the default device. Where there is none, nothing, or if `maySilent` a silent one in
    /// real time. `renderer` must outlive the output.
    [[nodiscard]] virtual std::unique_ptr<AudioOutput> openOutput(AudioRenderer& renderer,
                                                                  bool maySilent) = 0;
};

/// The module's one entry point, by the name below; what it gives lives as long as the process.
using MediaBackendEntry = MediaBackend* (*)();
inline constexpr const char* mediaBackendEntryName = "tamsyMediaBackend";

} // namespace tamsy
