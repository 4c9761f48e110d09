#pragma once

#include "ViewModels/LyricsFontSize.h"
#include "ViewModels/NowPlayingWindow.h"

#include <QPointer>

class QQmlEngine;
class QQuickWindow;

namespace tamsy {

class Visibility;

/// Creates the Now Playing window and keeps it while it is closed. Interface thread only.
class NowPlayingWindowController : public NowPlayingWindow {
  public:
    /// The arguments aren't owned and must outlive the window. Without `visibility` the window
    /// always counts as visible.
    NowPlayingWindowController(QQmlEngine& engine, PlayerViewModel& playerVM,
                               LibraryViewModel& libraryVM, LyricsFontSize& lyricsFontSize,
                               const Visibility* visibility = nullptr);
    ~NowPlayingWindowController() override;
    NowPlayingWindowController(const NowPlayingWindowController&) = delete;
    NowPlayingWindowController& operator=(const NowPlayingWindowController&) = delete;
    NowPlayingWindowController(NowPlayingWindowController&&) = delete;
    NowPlayingWindowController& operator=(NowPlayingWindowController&&) = delete;

    void makeKeyAndOrderFront() override;

    /// Null if the window couldn't be created.
    [[nodiscard]] QQuickWindow* window() const { return window_; }

  private:
    QPointer<QQuickWindow> window_; // owned; destroyed with its QML engine at the latest
};

} // namespace tamsy
