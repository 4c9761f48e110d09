#pragma once

#include "Models/Track.h"
#include "Platform/Mpris/MediaControls.h"

#include <QObject>

#include <functional>
#include <optional>

namespace tamsy {

class LibraryViewModel;
class PlayerViewModel;

/// The view models as the desktop's remote controls see them. Every answer is read from what the
/// view models publish, every wish becomes one of their operations. What takes looking for is kept
/// until they announce that it may have changed: panels ask often. Interface thread.
class RemoteControls : public MediaControls {
  public:
    /// What concerns the program and not its music.
    struct Program {
        std::function<void()> raise;
        std::function<void()> quit;
    };

    /// The view models aren't owned and outlive this object.
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
    /// What is looked for behind the current address.
    struct CurrentFile {
        std::optional<Track> scanned; // absent outside the folders
        FileURL cover;                // a picture file; empty while there is none
    };

    void forgetWhatChanges();
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
