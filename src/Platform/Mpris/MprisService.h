#pragma once

#include "Platform/Mpris/MprisObject.h"

#include <QDBusConnection>
#include <QObject>
#include <QTimer>

namespace tamsy {

/// Puts the player on the session bus, where media keys, panels and other remote controls find it
/// (MPRIS), and tells them what has changed. Nothing here waits for the bus; without one nothing
/// happens. Interface thread.
class MprisService : public QObject {
    Q_OBJECT

  public:
    /// The controls aren't owned and outlive this object. Asks for the bus name of
    /// `identity.busNameComponent`, or for one of this process's own if another program has it.
    MprisService(MediaControls& controls, const MediaPlayerIdentity& identity,
                 QDBusConnection bus = QDBusConnection::sessionBus(), QObject* parent = nullptr);
    ~MprisService() override;

    /// Something of the state may have changed. Only what has is told, a moment later.
    void noteChange();

    /// The position has changed otherwise than by playing on, or playing has started anew.
    void noteJump();

  private:
    void requestName(const QString& name, const QString& nameInstead);
    void announce();

    MediaControls& controls_;
    QDBusConnection bus_;
    MprisObject object_;
    QVariantMap announced_; // what others believe
    bool hasJumped_ = false;
    QTimer announcement_;
};

} // namespace tamsy
