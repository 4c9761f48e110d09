#pragma once

#include <functional>
#include <memory>

namespace tamsy {

class LibraryViewModel;
class PlayerViewModel;

/// The Now Playing window, as the player owns it. The views implement it. Interface thread only.
class NowPlayingWindow {
  public:
    NowPlayingWindow() = default;
    NowPlayingWindow(const NowPlayingWindow&) = delete;
    NowPlayingWindow& operator=(const NowPlayingWindow&) = delete;
    virtual ~NowPlayingWindow() = default;

    /// Shows the window in front of all others and gives it the keyboard focus.
    virtual void makeKeyAndOrderFront() = 0;
};

/// Makes the window for two view models, which must outlive it.
using NowPlayingWindowFactory =
    std::function<std::unique_ptr<NowPlayingWindow>(PlayerViewModel&, LibraryViewModel&)>;

} // namespace tamsy
