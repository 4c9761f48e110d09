#pragma once

#include "Platform/Mpris/MprisObject.h"

#include <QDBusConnection>
#include <QObject>
#include <QTimer>

namespace tamsy {

/// Publishes the player on the session bus (MPRIS) for media keys, panels and other remote
/// controls, and announces changes. Never waits for the bus; without one it does nothing. Interface
/// thread.
class MprisService : public QObject {
    Q_OBJECT

  public:
    /// The controls aren't owned and must outlive this object. Requests the bus name with
    /// `identity.busNameComponent`, or one with this process's number if that is taken.
    MprisService(MediaControls& controls, const MediaPlayerIdentity& identity,
                 QDBusConnection bus = QDBusConnection::sessionBus(), QObject* parent = nullptr);
    ~MprisService() override;

    /// Call this when the state may have changed. Actual changes are announced a moment later.
    void noteChange();

    /// Call this when the position has changed other than by playing, or playback has restarted.
    void noteJump();

  private:
    void requestName(const QString& name, const QString& nameInstead);
    void announce();

    MediaControls& controls_;
    QDBusConnection bus_;
    MprisObject object_;
    QVariantMap announced_; // as last announced
    bool hasJumped_ = false;
    QTimer announcement_;
};

} // namespace tamsy
