#pragma once

#include <QString>

namespace tamsy {

/// The Debian package with the QML module that `error`, an error of the QML engine, reports as
/// missing. Empty for any other error.
[[nodiscard]] QString packageOfMissingModule(const QString& error);

/// Reports on standard error, one line each, the optional packages that are missing: the icon
/// loader, a font with Chinese glyphs. Interface thread.
void reportMissingPackages();

} // namespace tamsy
