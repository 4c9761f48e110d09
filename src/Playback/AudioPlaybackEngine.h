#pragma once

#include "Utils/ValueSubject.h"

namespace tamsy {

class FileURL;

/// The interface between the player and anything that makes sound. It has no end-of-track event: an
/// engine reports three values, from which the player detects the end of a track.
///
/// All operations are called on the interface thread; none returns a result or fails visibly. A
/// file that can't be opened doesn't start: the playback log says so, and the values don't change.
/// Values may be sent from any thread.
class AudioPlaybackEngine {
  public:
    AudioPlaybackEngine() = default;
    AudioPlaybackEngine(const AudioPlaybackEngine&) = delete;
    AudioPlaybackEngine& operator=(const AudioPlaybackEngine&) = delete;
    virtual ~AudioPlaybackEngine() = default;

    /// True while sound is produced; initially false.
    [[nodiscard]] virtual Publisher<bool> isPlayingPublisher() const = 0;

    /// Duration of the loaded file in seconds; 0 if unknown or nothing is loaded. Initially 0.
    [[nodiscard]] virtual Publisher<double> durationPublisher() const = 0;

    /// Playback position in seconds; initially 0. While a file plays, it is reported at the update
    /// interval until `isPlaying` turns false after the end of the file; a report within 0.15 s of
    /// the duration, or past it, arrives before that. A report may be not finite.
    [[nodiscard]] virtual Publisher<double> currentTimePublisher() const = 0;

    /// Unloads the current file and loads this one, paused at position 0.
    virtual void load(const FileURL& url) = 0;

    /// Announces the file that is likely to be loaded next, or with an empty address none, so that
    /// a slow file can be opened ahead. It changes nothing else; an engine may ignore it.
    virtual void prepare(const FileURL& /*url*/) {}

    /// Starts or resumes the loaded file. Does nothing if none is loaded.
    virtual void play() = 0;

    /// Pauses at the current position. Does nothing if no file is loaded.
    virtual void pause() = 0;

    /// Stops and unloads the file. Sends `isPlaying` false and position 0 before it returns, even
    /// if no file is loaded.
    virtual void stop() = 0;

    /// Moves the position, in seconds; a playing file continues to play. Does nothing if no file is
    /// loaded.
    virtual void seek(double seconds) = 0;

    /// Sets the linear gain, 0 to 1, for this and all later files.
    virtual void setVolume(float volume) = 0;

    /// Sets the interval at which the position is reported while playing, in seconds, at least
    /// 0.05, for this and all later files. Takes effect at once.
    virtual void setUpdateInterval(double seconds) = 0;
};

} // namespace tamsy
