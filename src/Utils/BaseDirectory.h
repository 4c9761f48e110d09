#pragma once

#include <QByteArray>

namespace tamsy {

/// The kinds of a user's own files (freedesktop.org, XDG base directories).
enum class BaseDirectory {
    Config, ///< `$XDG_CONFIG_HOME`, else `~/.config`
    Data,   ///< `$XDG_DATA_HOME`, else `~/.local/share`
    State,  ///< `$XDG_STATE_HOME`, else `~/.local/state`
};

/// Where the user's files of a kind are, in bytes; it may not exist yet. As the standard asks, a
/// variable that is empty or relative is ignored.
[[nodiscard]] QByteArray baseDirectory(BaseDirectory kind);

} // namespace tamsy
