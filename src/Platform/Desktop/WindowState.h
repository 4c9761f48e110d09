#pragma once

#include <QByteArray>
#include <QSize>

#include <optional>

namespace tamsy {

/// The main window's size and its sidebar's, as the user left them. It lies in a small file of its
/// own under
/// `$XDG_STATE_HOME/Tamsy Music` (`~/.local/state` without the variable), apart from settings and
/// library: losing it loses nothing. Where the window stands is the window manager's business.
struct WindowState {
    QSize size; ///< in points, as it was when last neither maximised nor full-screen
    bool isMaximized = false;
    int sidebarWidth = 0; ///< in points; 0 if the user hasn't set it

    friend bool operator==(const WindowState& a, const WindowState& b) = default;

    /// The stored state; nothing if there is none or it makes no sense.
    [[nodiscard]] static std::optional<WindowState> load();

    /// Failures are ignored.
    void save() const;
};

} // namespace tamsy
