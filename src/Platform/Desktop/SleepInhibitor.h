#pragma once

#include "Platform/Threads/WorkerPool.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusUnixFileDescriptor>
#include <QObject>
#include <QString>
#include <QTimer>

#include <functional>

namespace tamsy {

/// Keeps the machine from suspending when idle, through the desktop's portal
/// (`org.freedesktop.portal.Inhibit`) or else the login manager (`org.freedesktop.login1`). The
/// screen may still turn off, and the user can still suspend. Never waits for a bus; without one it
/// does nothing. Interface thread.
class SleepInhibitor : public QObject {
    Q_OBJECT

  public:
    /// `who` and `why` are shown by the system's tools.
    SleepInhibitor(QString who, QString why,
                   QDBusConnection session = QDBusConnection::sessionBus(),
                   QObject* parent = nullptr);
    ~SleepInhibitor() override;

    /// Starts or ends the inhibition. It ends a second later, so that a step to the next track
    /// doesn't end it.
    void setInhibiting(bool inhibiting);

  private:
    enum class State { Released, Asking, Held };
    using Answer = std::function<void(const QDBusMessage& reply)>;

    void ask(const QDBusConnection& bus, const QDBusMessage& call, Answer granted,
             std::function<void()> refused);
    void follow();
    void askPortal();
    void connectToLoginManager();
    void askLoginManager(const QDBusConnection& system);
    void hold();
    void release();

    QString who_;
    QString why_;
    QDBusConnection session_;
    bool isWanted_ = false;
    State state_ = State::Released;
    QString portalHandle_;         // empty unless the portal has granted it
    QDBusUnixFileDescriptor lock_; // from the login manager; effective until it is closed
    QTimer releaseDelay_;
    WorkerPool connector_;
};

} // namespace tamsy
