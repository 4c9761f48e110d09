#pragma once

#include <QByteArray>
#include <QSize>

#include <optional>

namespace tamsy {

/// The main window's size and its sidebar's width, stored in a small file in
/// `$XDG_STATE_HOME/Tamsy Music` (by default `~/.local/state`), separate from settings and library
/// because it is dispensable. The window manager chooses the position.
struct WindowState {
    QSize size; ///< in points, when last neither maximised nor full-screen
    bool isMaximized = false;
    int sidebarWidth = 0; ///< in points; 0 if the user hasn't set it

    friend bool operator==(const WindowState& a, const WindowState& b) = default;

    /// The stored state; nothing if there is none or it is invalid.
    [[nodiscard]] static std::optional<WindowState> load();

    /// Failures are ignored.
    void save() const;
};

} // namespace tamsy
