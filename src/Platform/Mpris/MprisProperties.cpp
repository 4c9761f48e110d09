#include "Platform/Mpris/MprisProperties.h"

#include "Utils/FNV1a.h"

#include <algorithm>
#include <cmath>

namespace tamsy::mpris {
namespace {

constexpr double microsecondsPerSecond = 1e6;

/// Thirty thousand years: fits into 64 bits of microseconds and is exact as a double.
constexpr double maxTime = 1e12; // seconds

QString statusText(MediaState::Status status) {
    switch (status) {
    case MediaState::Status::Playing:
        return QStringLiteral("Playing");
    case MediaState::Status::Paused:
        return QStringLiteral("Paused");
    case MediaState::Status::Stopped:
        break;
    }
    return QStringLiteral("Stopped");
}

QVariantMap metadata(const MediaTrack& track) {
    QVariantMap map{
        {QStringLiteral("mpris:trackid"), QVariant::fromValue(trackId(track.url))},
        {QStringLiteral("xesam:url"), QString::fromUtf8(track.url.absoluteString())},
        {QStringLiteral("xesam:title"), track.title},
    };
    if (track.duration > 0)
        map.insert(QStringLiteral("mpris:length"), microseconds(track.duration));
    if (!track.artist.isEmpty())
        map.insert(QStringLiteral("xesam:artist"), QStringList(track.artist));
    if (!track.album.isEmpty())
        map.insert(QStringLiteral("xesam:album"), track.album);
    if (!track.artwork.isEmpty())
        map.insert(QStringLiteral("mpris:artUrl"),
                   QString::fromUtf8(track.artwork.absoluteString()));
    return map;
}

} // namespace

qint64 microseconds(double seconds) {
    if (!std::isfinite(seconds))
        return 0;
    return std::llround(std::clamp(seconds, 0.0, maxTime) * microsecondsPerSecond);
}

double seconds(qint64 microseconds) {
    return static_cast<double>(microseconds) / microsecondsPerSecond;
}

QDBusObjectPath trackId(const FileURL& url) {
    return QDBusObjectPath(QStringLiteral("/tamsy_music/track/") +
                           QString::fromLatin1(fnv1a64(url.absoluteString())));
}

QVariantMap rootProperties(const MediaPlayerIdentity& identity) {
    return {
        {QStringLiteral("Identity"), identity.name},
        {QStringLiteral("DesktopEntry"), identity.desktopEntry},
        {QStringLiteral("SupportedUriSchemes"), QStringList(QStringLiteral("file"))},
        {QStringLiteral("SupportedMimeTypes"), identity.fileTypes},
        {QStringLiteral("CanQuit"), true},
        {QStringLiteral("CanRaise"), true},
        {QStringLiteral("HasTrackList"), false},
    };
}

QVariantMap playerProperties(const MediaState& state) {
    const bool hasTrack = state.track.has_value();
    return {
        {QStringLiteral("PlaybackStatus"), statusText(state.status)},
        {QStringLiteral("LoopStatus"),
         state.repeatsTrack ? QStringLiteral("Track") : QStringLiteral("None")},
        {QStringLiteral("Shuffle"), state.shuffles},
        {QStringLiteral("Volume"), state.volume},
        {QStringLiteral("Metadata"), hasTrack ? metadata(*state.track) : QVariantMap()},
        {QStringLiteral("Rate"), 1.0},
        {QStringLiteral("MinimumRate"), 1.0},
        {QStringLiteral("MaximumRate"), 1.0},
        {QStringLiteral("CanGoNext"), state.canSkip},
        {QStringLiteral("CanGoPrevious"), state.canSkip},
        {QStringLiteral("CanPlay"), hasTrack},
        {QStringLiteral("CanPause"), hasTrack},
        {QStringLiteral("CanSeek"), state.canSeek()},
        {QStringLiteral("CanControl"), true},
    };
}

QString introspection() {
    return QStringLiteral(R"(
  <interface name="org.mpris.MediaPlayer2">
    <method name="Raise"/>
    <method name="Quit"/>
    <property name="CanQuit" type="b" access="read"/>
    <property name="CanRaise" type="b" access="read"/>
    <property name="HasTrackList" type="b" access="read"/>
    <property name="Identity" type="s" access="read"/>
    <property name="DesktopEntry" type="s" access="read"/>
    <property name="SupportedUriSchemes" type="as" access="read"/>
    <property name="SupportedMimeTypes" type="as" access="read"/>
  </interface>
  <interface name="org.mpris.MediaPlayer2.Player">
    <method name="Next"/>
    <method name="Previous"/>
    <method name="Pause"/>
    <method name="PlayPause"/>
    <method name="Stop"/>
    <method name="Play"/>
    <method name="Seek"><arg name="Offset" type="x" direction="in"/></method>
    <method name="SetPosition">
      <arg name="TrackId" type="o" direction="in"/>
      <arg name="Position" type="x" direction="in"/>
    </method>
    <method name="OpenUri"><arg name="Uri" type="s" direction="in"/></method>
    <signal name="Seeked"><arg name="Position" type="x"/></signal>
    <property name="PlaybackStatus" type="s" access="read"/>
    <property name="LoopStatus" type="s" access="readwrite"/>
    <property name="Rate" type="d" access="readwrite"/>
    <property name="Shuffle" type="b" access="readwrite"/>
    <property name="Metadata" type="a{sv}" access="read"/>
    <property name="Volume" type="d" access="readwrite"/>
    <property name="Position" type="x" access="read">
      <annotation name="org.freedesktop.DBus.Property.EmitsChangedSignal" value="false"/>
    </property>
    <property name="MinimumRate" type="d" access="read"/>
    <property name="MaximumRate" type="d" access="read"/>
    <property name="CanGoNext" type="b" access="read"/>
    <property name="CanGoPrevious" type="b" access="read"/>
    <property name="CanPlay" type="b" access="read"/>
    <property name="CanPause" type="b" access="read"/>
    <property name="CanSeek" type="b" access="read"/>
    <property name="CanControl" type="b" access="read"/>
  </interface>
)");
}

} // namespace tamsy::mpris
