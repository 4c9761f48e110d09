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
        Started, // the output plays, or plays again after a loss
        Lost,    // the output is lost; another is searched for
        Sought,  // `seek` is done
        Scanned, // `duration` was an estimate and is exact now
        Ended,   // all frames have been heard; `position` is the true duration
        Unheard, // no other output was found
    };
    Kind kind = Kind::Failed;
    std::uint64_t item = 0;
    std::uint64_t seek = 0; // the latest seek that was done
    double position = 0;
    double duration = 0;
    std::uint64_t frame = 0;
};

/// The work of the playback thread: opens the requested file, keeps the ring buffer filled and
/// sends reports. Only this thread uses the decoder, so it needs no lock, and a slow disk blocks
/// only this thread.
class PlaybackLoop {
  public:
    using BackendSource = std::function<MediaBackend*()>;
    using Listener = std::function<void(const PlaybackReport&)>;

    /// Both functions are called on the playback thread. The references must outlive this.
    PlaybackLoop(PlaybackRequests& requests, OutputKeeper& output, FrameRing& ring,
                 BackendSource backendSource, Listener listener);

    /// Runs until the request is to quit.
    void run();

  private:
    using Clock = PlaybackRequests::Clock;

    void changeItem(const PlaybackRequest& request);
    void prepareNext(const PlaybackRequest& request);
    [[nodiscard]] std::unique_ptr<MediaDecoder> openFile(const QByteArray& path);
    void seek(const PlaybackRequest& request);
    void discardSound();
    void fill();
    void scan();
    void decodeOnce();
    void settle(const PlaybackRequest& request);
    void start(const PlaybackRequest& request);
    void reportEnd();
    void reportOutput();
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
    std::unique_ptr<MediaDecoder> next_; // of the file at `nextPath_`, unless it can't be opened
    QByteArray nextPath_;
    std::span<const StereoFrame> pending_; // decoded, not yet in the ring buffer
    bool filling_ = false;
    bool scanning_ = false;
    bool drained_ = false;
    bool endReported_ = false;
    // Of the first frame since the last seek: its position in seconds, and its number in the ring
    // buffer.
    double anchorPosition_ = 0;
    std::uint64_t anchorFrame_ = 0;
    OutputKeeper::State seen_ = OutputKeeper::State::Held; // the output's state at the last check
};

} // namespace tamsy
