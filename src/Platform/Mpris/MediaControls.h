#pragma once

#include "Utils/FileURL.h"

#include <QString>
#include <QStringList>

#include <optional>

namespace tamsy {

/// How the program presents itself to the desktop.
struct MediaPlayerIdentity {
    QString name;             ///< for display
    QString desktopEntry;     ///< the desktop file's name without its extension
    QStringList fileTypes;    ///< MIME types that `MediaControls::open` accepts
    QString busNameComponent; ///< letters, digits, `_`, `-` and dots
};

/// The current track, as the desktop shows it. Texts may be empty.
struct MediaTrack {
    FileURL url;
    QString title;
    QString artist;
    QString album;
    double duration = 0; ///< seconds; 0 if unknown
    FileURL artwork;     ///< a picture file; empty if there is none
};

/// A snapshot of what the desktop shows of the player.
struct MediaState {
    enum class Status { Stopped, Paused, Playing };

    Status status = Status::Stopped;
    std::optional<MediaTrack> track;
    double volume = 0; ///< linear gain, 0 to 1
    bool shuffles = false;
    bool repeatsTrack = false;
    bool canSkip = false; ///< whether next and previous do anything

    [[nodiscard]] bool canSeek() const { return track && track->duration > 0; }
};

/// The player, as the desktop's remote controls use it. No operation fails or blocks. Interface
/// thread.
class MediaControls {
  public:
    MediaControls() = default;
    MediaControls(const MediaControls&) = delete;
    MediaControls& operator=(const MediaControls&) = delete;
    virtual ~MediaControls() = default;

    [[nodiscard]] virtual MediaState state() const = 0;

    /// The playback position in seconds. Not part of the state, since it changes all the time.
    [[nodiscard]] virtual double position() const = 0;

    virtual void play() = 0;
    virtual void pause() = 0;
    virtual void playPause() = 0;
    virtual void stop() = 0; ///< pauses at the start of the track
    virtual void next() = 0;
    virtual void previous() = 0;
    virtual void seek(double seconds) = 0;   ///< from 0 to the track's duration
    virtual void setVolume(double gain) = 0; ///< 0 to 1
    virtual void setShuffles(bool shuffles) = 0;
    virtual void setRepeatsTrack(bool repeats) = 0;

    /// Plays a file. False if its format isn't supported.
    [[nodiscard]] virtual bool open(const FileURL& url) = 0;

    virtual void raise() = 0;
    virtual void quit() = 0;
};

} // namespace tamsy
