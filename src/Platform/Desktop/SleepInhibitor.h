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

/// Keeps the machine from falling asleep by itself, through the desktop's portal
/// (`org.freedesktop.portal.Inhibit`) or, where there is none, the login manager
/// (`org.freedesktop.login1`). The screen may go dark, and a user who sends the machine to sleep is
/// obeyed. Nothing here waits for a bus; without one nothing happens. Interface thread.
class SleepInhibitor : public QObject {
    Q_OBJECT

  public:
    /// `who` and `why` are what the system's own tools list.
    SleepInhibitor(QString who, QString why,
                   QDBusConnection session = QDBusConnection::sessionBus(),
                   QObject* parent = nullptr);
    ~SleepInhibitor() override;

    /// What is wished from now on. A wish that ends is followed a second later, so that the step
    /// from track to track isn't an end.
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
    QString portalHandle_;         // empty unless the portal grants it
    QDBusUnixFileDescriptor lock_; // the login manager's, which holds until it is closed
    QTimer releaseDelay_;
    WorkerPool connector_;
};

} // namespace tamsy
