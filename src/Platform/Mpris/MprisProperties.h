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

/// Clamped so that the result fits into 64 bits; 0 for NaN and infinity.
[[nodiscard]] qint64 microseconds(double seconds);
[[nodiscard]] double seconds(qint64 microseconds);

/// Equal for equal addresses, so that a remote control recognises a track.
[[nodiscard]] QDBusObjectPath trackId(const FileURL& url);

/// The properties of each interface, with the types that the protocol requires. Without the
/// position, which changes all the time and is sent only on request.
[[nodiscard]] QVariantMap rootProperties(const MediaPlayerIdentity& identity);
[[nodiscard]] QVariantMap playerProperties(const MediaState& state);

/// Both interfaces in the introspection format of the D-Bus Specification.
[[nodiscard]] QString introspection();

} // namespace tamsy::mpris
