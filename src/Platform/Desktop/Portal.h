#pragma once

#include <QString>

namespace tamsy {

/// The desktop portals' bus name and object path (xdg-desktop-portal).
inline const QString portalService = QStringLiteral("org.freedesktop.portal.Desktop");
inline const QString portalPath = QStringLiteral("/org/freedesktop/portal/desktop");

} // namespace tamsy
