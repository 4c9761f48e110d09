#pragma once

#include "Models/Track.h"
#include "Platform/Mpris/MediaControls.h"

#include <QObject>

#include <functional>
#include <optional>

namespace tamsy {

class LibraryViewModel;
class PlayerViewModel;

/// Implements remote controls with the two view models. What takes a search is cached until a
/// signal says that it may have changed, since panels query often. Interface thread.
class RemoteControls : public MediaControls {
  public:
    /// Requests to the program rather than the player.
    struct Program {
        std::function<void()> raise;
        std::function<void()> quit;
    };

    /// The view models aren't owned and must outlive this object.
    RemoteControls(PlayerViewModel& player, LibraryViewModel& library, Program program);

    [[nodiscard]] MediaState state() const override;
    [[nodiscard]] double position() const override;

    void play() override;
    void pause() override;
    void playPause() override;
    void stop() override;
    void next() override;
    void previous() override;
    void seek(double seconds) override;
    void setVolume(double gain) override;
    void setShuffles(bool shuffles) override;
    void setRepeatsTrack(bool repeats) override;
    [[nodiscard]] bool open(const FileURL& url) override;
    void raise() override;
    void quit() override;

  private:
    /// What is known of the current file beyond its address.
    struct CurrentFile {
        std::optional<Track> scanned; // absent if no folder of the library contains the file
        FileURL cover;                // a picture file; empty if there is none yet
    };

    void clearCachesOnChange();
    [[nodiscard]] const CurrentFile& currentFile() const;
    [[nodiscard]] bool hasListedTracks() const;
    [[nodiscard]] MediaState::Status status() const;
    [[nodiscard]] MediaTrack currentTrack() const;
    [[nodiscard]] bool canSkip() const;

    PlayerViewModel& player_;
    LibraryViewModel& library_;
    Program program_;
    mutable std::optional<CurrentFile> currentFile_;
    mutable std::optional<bool> hasListedTracks_;
    QObject receiver_; // of the view models' signals
};

} // namespace tamsy
