#pragma once

#include <QString>
#include <QStringList>

namespace tamsy {

/// The Debian package with the QML module that `error`, an error of the QML engine, reports as
/// missing. Empty for any other error.
[[nodiscard]] QString packageOfMissingModule(const QString& error);

/// The Debian package that brings windows to a session with nothing but a Wayland compositor, if
/// none of the directories of Qt's plugins has it. Empty in other sessions. Call it before the
/// application is constructed, which would end the process.
[[nodiscard]] QString packageOfMissingPlatform(const QStringList& pluginDirectories);

/// Reports on standard error, one line each, the optional packages that are missing: the icon
/// loader, a font with Chinese glyphs. Interface thread.
void reportMissingPackages();

} // namespace tamsy
