#pragma once

#include "Utils/ValueSubject.h"

namespace tamsy {

class FileURL;

/// The one interface between the player and anything that makes sound. It has no end-of-track
/// event: an engine reports three values and the player works out by itself that a track has ended.
///
/// All operations are called on the interface thread; none returns a result or fails visibly. A
/// file that can't be opened is one that doesn't start: it is reported in the playback log, and the
/// values stay as they stand. The published values may be sent from any thread.
class AudioPlaybackEngine {
  public:
    AudioPlaybackEngine() = default;
    AudioPlaybackEngine(const AudioPlaybackEngine&) = delete;
    AudioPlaybackEngine& operator=(const AudioPlaybackEngine&) = delete;
    virtual ~AudioPlaybackEngine() = default;

    /// True while sound is being produced; starts false.
    [[nodiscard]] virtual Publisher<bool> isPlayingPublisher() const = 0;

    /// Length of the loaded file in seconds; 0 when unknown or nothing is loaded. Starts 0.
    [[nodiscard]] virtual Publisher<double> durationPublisher() const = 0;

    /// Playback position in seconds; starts 0. While a file plays, reports go on at the update
    /// interval through the end of the file until `isPlaying` turns false: one within 0.15 s of the
    /// duration, or beyond it, arrives while it is still true. A report may be not finite.
    [[nodiscard]] virtual Publisher<double> currentTimePublisher() const = 0;

    /// Drops whatever was loaded and prepares this file, paused, at position 0.
    virtual void load(const FileURL& url) = 0;

    /// Starts or resumes the loaded file. With nothing loaded nothing happens.
    virtual void play() = 0;

    /// Holds the position. With nothing loaded nothing happens.
    virtual void pause() = 0;

    /// Ends playback and frees the file; sends `isPlaying` false and position 0 before it returns,
    /// also with nothing loaded.
    virtual void stop() = 0;

    /// Moves the position, in seconds; playing goes on if it was on. With nothing loaded nothing
    /// happens.
    virtual void seek(double seconds) = 0;

    /// Sets the linear gain, 0 to 1; it also holds for every later file.
    virtual void setVolume(float volume) = 0;

    /// Sets how often the position is reported while playing, in seconds, at least 0.05; it also
    /// governs every later file. A running refresh restarts at the new rate at once.
    virtual void setUpdateInterval(double seconds) = 0;
};

} // namespace tamsy
