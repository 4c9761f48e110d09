#pragma once

#include "ViewModels/LyricsFontSize.h"
#include "ViewModels/NowPlayingWindow.h"

#include <QPointer>

class QQmlEngine;
class QQuickWindow;

namespace tamsy {

class Visibility;

/// Makes the Now Playing window and keeps it, with all that it shows, also while it is closed.
/// Interface thread only.
class NowPlayingWindowController : public NowPlayingWindow {
  public:
    /// Nothing of it is owned, all of it outlives the window. Without `visibility` the window
    /// always takes itself for seen.
    NowPlayingWindowController(QQmlEngine& engine, PlayerViewModel& playerVM,
                               LibraryViewModel& libraryVM, LyricsFontSize& lyricsFontSize,
                               const Visibility* visibility = nullptr);
    ~NowPlayingWindowController() override;
    NowPlayingWindowController(const NowPlayingWindowController&) = delete;
    NowPlayingWindowController& operator=(const NowPlayingWindowController&) = delete;
    NowPlayingWindowController(NowPlayingWindowController&&) = delete;
    NowPlayingWindowController& operator=(NowPlayingWindowController&&) = delete;

    void makeKeyAndOrderFront() override;

    /// Null if the window couldn't be made.
    [[nodiscard]] QQuickWindow* window() const { return window_; }

  private:
    QPointer<QQuickWindow> window_; // owned, but never beyond its engine
};

} // namespace tamsy
