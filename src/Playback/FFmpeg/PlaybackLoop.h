#pragma once

#include "Playback/FFmpeg/MediaBackend.h"
#include "Playback/FFmpeg/PlaybackRequests.h"
#include "Playback/Output/FrameRing.h"
#include "Playback/Output/OutputKeeper.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>

namespace tamsy {

/// A report of the playback thread about one item. Positions are in seconds; `frame` is the ring
/// buffer's number of the frame at `position`.
struct PlaybackReport {
    enum class Kind {
        Opened,  // `position` is 0, `duration` may be not finite
        Failed,  // the file can't be played
        Started, // sound has begun to flow, or flows again
        Lost,    // the output has vanished; another is looked for
        Sought,  // `seek` is done
        Scanned, // `duration` was an estimate and is exact now
        Ended,   // all sound has been played; `position` is the true length
        Unheard, // no other has come
    };
    Kind kind = Kind::Failed;
    std::uint64_t item = 0;
    std::uint64_t seek = 0; // the latest seek that was done
    double position = 0;
    double duration = 0;
    std::uint64_t frame = 0;
};

/// The work of the playback thread: opens what is wanted, keeps the ring filled, tells how it went.
/// Nobody else touches the decoder, so it needs no lock, and whatever a slow disk does holds up
/// nobody but this thread.
class PlaybackLoop {
  public:
    using BackendSource = std::function<MediaBackend*()>;
    using Listener = std::function<void(const PlaybackReport&)>;

    PlaybackLoop(PlaybackRequests& requests, OutputKeeper& output, FrameRing& ring,
                 BackendSource backendSource, Listener listener);

    /// Runs until the request is to quit.
    void run();

  private:
    using Clock = PlaybackRequests::Clock;

    void changeItem(const PlaybackRequest& request);
    void seek(const PlaybackRequest& request);
    void discardSound();
    void fill();
    void scan();
    void decodeOnce();
    void settle(const PlaybackRequest& request);
    void start(const PlaybackRequest& request);
    void reportEnd();
    void lookAtOutput();
    [[nodiscard]] Clock::time_point deadline(bool running) const;
    [[nodiscard]] bool hasAllSound() const { return drained_ && pending_.empty(); }
    [[nodiscard]] bool needsNoSound() const { return !filling_ || hasAllSound(); }
    void report(PlaybackReport::Kind kind, double position) const;

    PlaybackRequests& requests_;
    OutputKeeper& output_;
    FrameRing& ring_;
    const BackendSource backendSource_;
    const Listener listener_;

    std::uint64_t item_ = 0;
    std::uint64_t seek_ = 0;
    std::uint64_t run_ = 0; // the latest start that was done
    std::unique_ptr<MediaDecoder> decoder_;
    std::span<const StereoFrame> pending_; // decoded, not yet in the ring buffer
    bool filling_ = false;
    bool scanning_ = false;
    bool drained_ = false;
    bool endReported_ = false;
    double anchorPosition_ = 0; // seconds, the position of the frame below
    std::uint64_t anchorFrame_ =
        0; // the ring buffer's number of the first frame since the last seek
    OutputKeeper::State seen_ =
        OutputKeeper::State::Held; // of the output, when it was last looked at
};

} // namespace tamsy
