#pragma once

#include "Utils/FileURL.h"

#include <QString>
#include <QStringList>

#include <optional>

namespace tamsy {

/// What the desktop is told of the program itself.
struct MediaPlayerIdentity {
    QString name;             ///< as it is shown
    QString desktopEntry;     ///< of the desktop file, without its extension
    QStringList fileTypes;    ///< MIME types that `MediaControls::open` takes
    QString busNameComponent; ///< letters, digits, `_`, `-` and dots
};

/// The track that is current, as the desktop is told of it. Texts may be empty.
struct MediaTrack {
    FileURL url;
    QString title;
    QString artist;
    QString album;
    double duration = 0; ///< seconds; 0 when unknown
    FileURL artwork;     ///< a picture file; empty if there is none
};

/// What the desktop shows of the player, at one moment.
struct MediaState {
    enum class Status { Stopped, Paused, Playing };

    Status status = Status::Stopped;
    std::optional<MediaTrack> track;
    double volume = 0; ///< linear gain, 0 to 1
    bool shuffles = false;
    bool repeatsTrack = false;
    bool canSkip = false; ///< whether next and previous lead anywhere

    [[nodiscard]] bool canSeek() const { return track && track->duration > 0; }
};

/// The player as the desktop's remote controls see it. Interface thread; no operation fails or
/// waits.
class MediaControls {
  public:
    MediaControls() = default;
    MediaControls(const MediaControls&) = delete;
    MediaControls& operator=(const MediaControls&) = delete;
    virtual ~MediaControls() = default;

    [[nodiscard]] virtual MediaState state() const = 0;

    /// Of the playback, in seconds. Apart from the state, since it changes all the time.
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

    /// Plays a file. False if it is none that the player takes.
    [[nodiscard]] virtual bool open(const FileURL& url) = 0;

    virtual void raise() = 0;
    virtual void quit() = 0;
};

} // namespace tamsy
