#pragma once

#include <QPalette>

class QWindow;

namespace tamsy {

/// Gives the application a window's own palette for as long as this object lives. Where a Wayland
/// compositor draws no title bars, Qt paints one in the application's colours of the moment in
/// which the window comes up. Does nothing on other platforms. Interface thread.
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

} // namespace tamsy
