#pragma once

#include "Platform/Mpris/MediaControls.h"

#include <functional>

namespace tamsy {

class LibraryViewModel;
class PlayerViewModel;

/// The view models as the desktop's remote controls see them. It keeps nothing: every answer is
/// read from what the view models publish, every wish becomes one of their operations. Interface
/// thread.
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
    [[nodiscard]] MediaState::Status status() const;
    [[nodiscard]] MediaTrack currentTrack() const;
    [[nodiscard]] bool canSkip() const;

    PlayerViewModel& player_;
    LibraryViewModel& library_;
    Program program_;
};

} // namespace tamsy
