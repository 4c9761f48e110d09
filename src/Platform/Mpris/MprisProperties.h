#pragma once

#include "Platform/Mpris/MediaControls.h"

#include <QDBusObjectPath>
#include <QLatin1String>
#include <QVariantMap>

/// The names and values of the MPRIS D-Bus Interface Specification, version 2.2. Times on the bus
/// are microseconds.
namespace tamsy::mpris {

inline constexpr QLatin1String objectPath("/org/mpris/MediaPlayer2");
inline constexpr QLatin1String rootInterface("org.mpris.MediaPlayer2");
inline constexpr QLatin1String playerInterface("org.mpris.MediaPlayer2.Player");
inline constexpr QLatin1String propertiesInterface("org.freedesktop.DBus.Properties");
inline constexpr QLatin1String positionProperty("Position");

/// The longest time that is told or taken, so that none leaves the bus's 64 bits.
[[nodiscard]] qint64 microseconds(double seconds);
[[nodiscard]] double seconds(qint64 microseconds);

/// The same for the same address, so that a remote control knows a track again.
[[nodiscard]] QDBusObjectPath trackId(const FileURL& url);

/// The properties of either interface, with the types that the bus wants. The position isn't among
/// them: it changes all the time and is only told when asked for.
[[nodiscard]] QVariantMap rootProperties(const MediaPlayerIdentity& identity);
[[nodiscard]] QVariantMap playerProperties(const MediaState& state);

/// Both interfaces in the introspection format of the D-Bus Specification.
[[nodiscard]] QString introspection();

} // namespace tamsy::mpris
