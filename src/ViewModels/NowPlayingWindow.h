#pragma once

#include <functional>
#include <memory>

namespace tamsy {

class LibraryViewModel;
class PlayerViewModel;

/// The large window beside the main one, as the player owns it. The windows' layer provides it.
/// Interface thread only.
class NowPlayingWindow {
  public:
    NowPlayingWindow() = default;
    NowPlayingWindow(const NowPlayingWindow&) = delete;
    NowPlayingWindow& operator=(const NowPlayingWindow&) = delete;
    virtual ~NowPlayingWindow() = default;

    /// Shows the window in front of the others, with the keyboard.
    virtual void makeKeyAndOrderFront() = 0;
};

/// Makes the window over the two view models, which outlive it.
using NowPlayingWindowFactory =
    std::function<std::unique_ptr<NowPlayingWindow>(PlayerViewModel&, LibraryViewModel&)>;

} // namespace tamsy
