#include "Platform/Mpris/MprisObject.h"

#include "Platform/Mpris/MprisProperties.h"

#include <QDBusConnection>
#include <QDBusError>
#include <QDBusVariant>

#include <algorithm>
#include <array>
#include <cmath>

namespace tamsy {
namespace {

using namespace mpris;

/// A method or writable property. `run` gets arguments of exactly the types in `signature` and
/// returns whether their values are valid.
struct Call {
    QLatin1String interface;
    QLatin1String name;
    QLatin1String signature;
    bool (*run)(MediaControls& controls, const QVariantList& arguments);
};

/// Seeking past the end starts the next track.
bool seekBy(MediaControls& controls, const QVariantList& arguments) {
    const MediaState state = controls.state();
    if (!state.canSeek())
        return true;
    const double target = controls.position() + seconds(arguments.constFirst().toLongLong());
    if (target > state.track->duration)
        controls.next();
    else
        controls.seek(std::max(target, 0.0));
    return true;
}

/// Ignored if it arrives late, for a track that is over, or is out of range.
bool setPosition(MediaControls& controls, const QVariantList& arguments) {
    const MediaState state = controls.state();
    const qint64 target = arguments.at(1).toLongLong();
    if (state.canSeek() && arguments.at(0).value<QDBusObjectPath>() == trackId(state.track->url) &&
        target >= 0 && target <= microseconds(state.track->duration))
        controls.seek(seconds(target));
    return true;
}

bool openUri(MediaControls& controls, const QVariantList& arguments) {
    const auto url = FileURL::fromAbsoluteString(arguments.constFirst().toString().toUtf8());
    // Other programs escape differently; normalise to our own form.
    return url && controls.open(FileURL::fromPath(url->path()));
}

/// "None" and "Playlist" mean the same: the list always wraps round unless one track is repeated.
bool setLoopStatus(MediaControls& controls, const QVariantList& arguments) {
    const QString status = arguments.constFirst().toString();
    const bool repeats = status == QLatin1String("Track");
    if (!repeats && status != QLatin1String("None") && status != QLatin1String("Playlist"))
        return false;
    controls.setRepeatsTrack(repeats);
    return true;
}

/// The only rate is 1; setting 0 pauses.
bool setRate(MediaControls& controls, const QVariantList& arguments) {
    const double rate = arguments.constFirst().toDouble();
    if (rate == 0)
        controls.pause();
    return rate == 0 || rate == 1;
}

bool setVolume(MediaControls& controls, const QVariantList& arguments) {
    const double gain = arguments.constFirst().toDouble();
    if (std::isnan(gain))
        return false;
    controls.setVolume(std::clamp(gain, 0.0, 1.0));
    return true;
}

/// A method without arguments that can't fail.
template <void (MediaControls::*operation)()>
bool plain(MediaControls& controls, const QVariantList& /*arguments*/) {
    (controls.*operation)();
    return true;
}

constexpr QLatin1String none("");

constexpr std::array methods{
    Call{rootInterface, QLatin1String("Raise"), none, plain<&MediaControls::raise>},
    Call{rootInterface, QLatin1String("Quit"), none, plain<&MediaControls::quit>},
    Call{playerInterface, QLatin1String("Next"), none, plain<&MediaControls::next>},
    Call{playerInterface, QLatin1String("Previous"), none, plain<&MediaControls::previous>},
    Call{playerInterface, QLatin1String("Pause"), none, plain<&MediaControls::pause>},
    Call{playerInterface, QLatin1String("PlayPause"), none, plain<&MediaControls::playPause>},
    Call{playerInterface, QLatin1String("Stop"), none, plain<&MediaControls::stop>},
    Call{playerInterface, QLatin1String("Play"), none, plain<&MediaControls::play>},
    Call{playerInterface, QLatin1String("Seek"), QLatin1String("x"), seekBy},
    Call{playerInterface, QLatin1String("SetPosition"), QLatin1String("ox"), setPosition},
    Call{playerInterface, QLatin1String("OpenUri"), QLatin1String("s"), openUri},
};

constexpr std::array writableProperties{
    Call{playerInterface, QLatin1String("LoopStatus"), QLatin1String("s"), setLoopStatus},
    Call{playerInterface, QLatin1String("Rate"), QLatin1String("d"), setRate},
    Call{playerInterface, QLatin1String("Volume"), QLatin1String("d"), setVolume},
    Call{playerInterface, QLatin1String("Shuffle"), QLatin1String("b"),
         [](MediaControls& controls, const QVariantList& arguments) {
             controls.setShuffles(arguments.constFirst().toBool());
             return true;
         }},
};

/// A caller may omit a method's interface.
template <std::size_t size>
const Call* find(const std::array<Call, size>& calls, const QString& interface,
                 const QString& name) {
    const auto* const found = std::ranges::find_if(calls, [&](const Call& call) {
        return call.name == name && (interface.isEmpty() || call.interface == interface);
    });
    return found == calls.end() ? nullptr : found;
}

QDBusMessage refusal(const QDBusMessage& message, QDBusError::ErrorType type) {
    return message.createErrorReply(type,
                                    message.interface() + QLatin1Char('.') + message.member());
}

QDBusMessage run(const Call& call, MediaControls& controls, const QDBusMessage& message,
                 QLatin1String signature, const QVariantList& arguments) {
    return signature == call.signature && call.run(controls, arguments)
               ? message.createReply()
               : refusal(message, QDBusError::InvalidArgs);
}

QLatin1String signatureOf(const QVariant& value) {
    switch (value.typeId()) {
    case QMetaType::Bool:
        return QLatin1String("b");
    case QMetaType::Double:
        return QLatin1String("d");
    case QMetaType::QString:
        return QLatin1String("s");
    default:
        return none; // no writable property has another type
    }
}

} // namespace

MprisObject::MprisObject(MediaControls& controls, const MediaPlayerIdentity& identity)
    : controls_(controls), rootProperties_(mpris::rootProperties(identity)) {}

QString MprisObject::introspect(const QString& /*path*/) const {
    return introspection();
}

bool MprisObject::handleMessage(const QDBusMessage& message, const QDBusConnection& connection) {
    const QDBusMessage reply = answer(message);
    if (message.isReplyRequired())
        static_cast<void>(connection.send(reply)); // the caller may be gone
    return true;
}

QDBusMessage MprisObject::answer(const QDBusMessage& message) const {
    if (message.interface() == propertiesInterface)
        return answerProperties(message);
    const Call* method = find(methods, message.interface(), message.member());
    if (method == nullptr)
        return refusal(message, QDBusError::UnknownMethod);
    const QByteArray signature = message.signature().toLatin1();
    return run(*method, controls_, message, QLatin1String(signature), message.arguments());
}

QDBusMessage MprisObject::answerProperties(const QDBusMessage& message) const {
    const QString call = message.member() + QLatin1Char('(') + message.signature();
    if (call == QLatin1String("Set(ssv"))
        return set(message);
    if (call == QLatin1String("Get(ss"))
        return get(message);
    if (call != QLatin1String("GetAll(s"))
        return refusal(message, QDBusError::UnknownMethod);
    const QVariantMap all = properties(message.arguments().constFirst().toString());
    return all.isEmpty() ? refusal(message, QDBusError::UnknownInterface)
                         : message.createReply(all);
}

QDBusMessage MprisObject::get(const QDBusMessage& message) const {
    const QString interface = message.arguments().at(0).toString();
    const QString name = message.arguments().at(1).toString();
    const auto reply = [&](const QVariant& value) {
        return message.createReply(QVariant::fromValue(QDBusVariant(value)));
    };
    // A shortcut: panels ask for the position all the time.
    if (interface == playerInterface && name == positionProperty)
        return reply(microseconds(controls_.position()));
    const QVariantMap all = properties(interface);
    if (all.contains(name))
        return reply(all.value(name));
    return refusal(message,
                   all.isEmpty() ? QDBusError::UnknownInterface : QDBusError::UnknownProperty);
}

QDBusMessage MprisObject::set(const QDBusMessage& message) const {
    const QString interface = message.arguments().at(0).toString();
    const QString name = message.arguments().at(1).toString();
    const auto value = message.arguments().at(2).value<QDBusVariant>().variant();
    if (const Call* property = find(writableProperties, interface, name))
        return run(*property, controls_, message, signatureOf(value), {value});
    return refusal(message, properties(interface).contains(name) ? QDBusError::PropertyReadOnly
                                                                 : QDBusError::UnknownProperty);
}

QVariantMap MprisObject::properties(const QString& interface) const {
    if (interface == rootInterface)
        return rootProperties_;
    if (interface != playerInterface)
        return {};
    QVariantMap all = playerProperties(controls_.state());
    all.insert(positionProperty, microseconds(controls_.position()));
    return all;
}

} // namespace tamsy
