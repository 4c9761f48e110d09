#pragma once

#include <QString>

namespace tamsy {

/// The Debian package that brings the QML module which `error`, of the QML engine's, says isn't
/// installed. Empty if it says something else.
[[nodiscard]] QString packageOfMissingModule(const QString& error);

/// Says on standard error, in one line each, what this system lacks that the program runs without:
/// the reader of its icons, a font with Chinese glyphs. On the interface thread.
void reportMissingPackages();

} // namespace tamsy
