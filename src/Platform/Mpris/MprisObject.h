#pragma once

#include "Platform/Mpris/MediaControls.h"

#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QVariantMap>

namespace tamsy {

/// Answers the calls of remote controls. A wrong type, a value out of range or an unknown name gets
/// the matching D-Bus error, unless the protocol asks to ignore the call. Interface thread.
class MprisObject : public QDBusVirtualObject {
    Q_OBJECT

  public:
    /// The controls aren't owned and must outlive this object.
    MprisObject(MediaControls& controls, const MediaPlayerIdentity& identity);

    [[nodiscard]] QString introspect(const QString& path) const override;
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override;

  private:
    [[nodiscard]] QDBusMessage answer(const QDBusMessage& message) const;
    [[nodiscard]] QDBusMessage answerProperties(const QDBusMessage& message) const;
    [[nodiscard]] QDBusMessage get(const QDBusMessage& message) const;
    [[nodiscard]] QDBusMessage set(const QDBusMessage& message) const;
    [[nodiscard]] QVariantMap properties(const QString& interface) const;

    MediaControls& controls_;
    QVariantMap rootProperties_;
};

} // namespace tamsy
