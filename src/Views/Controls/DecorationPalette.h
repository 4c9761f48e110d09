#pragma once

#include <QPalette>

class QWindow;

namespace tamsy {

/// Gives the application a window's palette while this object exists. If a Wayland compositor draws
/// no title bars, Qt paints them in the colours that the application has when the window is shown.
/// Does nothing on other platforms. Interface thread.
class DecorationPalette {
  public:
    explicit DecorationPalette(const QWindow& window);
    ~DecorationPalette();
    DecorationPalette(const DecorationPalette&) = delete;
    DecorationPalette& operator=(const DecorationPalette&) = delete;
    DecorationPalette(DecorationPalette&&) = delete;
    DecorationPalette& operator=(DecorationPalette&&) = delete;

  private:
    const QPalette former_;
};

/// Repaints a title bar that Qt paints, in the window's current colours.
void repaintDecoration(QWindow& window);

} // namespace tamsy
