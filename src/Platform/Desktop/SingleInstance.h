#pragma once

#include "Platform/Storage/FileDescriptor.h"

#include <QByteArray>
#include <QObject>

#include <memory>

class QLocalServer;

namespace tamsy {

/// Ensures that only one program uses a configuration directory, since its library supports only
/// one writer. A second start asks the first to show its window and ends. Programs with different
/// configuration directories run side by side.
///
/// The kernel releases the lock however the process ends. The lock file is in the configuration
/// directory, so that it also works across sessions and runtime directories; it contains the path
/// of the socket, which is in the runtime directory. This object must outlive the last write.
class SingleInstance : public QObject {
    Q_OBJECT

  public:
    /// `configurationDirectory` is a path in bytes. It is created if it is missing.
    explicit SingleInstance(QByteArray configurationDirectory, QObject* parent = nullptr);
    ~SingleInstance() override;

    /// True if this is the only program, until this object is destroyed. False if another one runs:
    /// it has been asked to show its window, and this one must end. Waits for at most five seconds
    /// for a program that is ending or doesn't answer. Needs no application object, so that a
    /// second start is quick.
    [[nodiscard]] bool acquire();

    /// Where sockets are made: a directory that only the user can access. It is created. Empty if
    /// there is no safe one.
    [[nodiscard]] static QByteArray socketDirectory();

    /// Starts answering second starts. Needs the application object. Call it after `acquire()`.
    void listen();

  Q_SIGNALS:
    /// A second start asks for the window. `activationToken` is from its environment, to pass on
    /// the focus (XDG_ACTIVATION_TOKEN, else DESKTOP_STARTUP_ID), or empty.
    void activationRequested(const QByteArray& activationToken);

  private:
    [[nodiscard]] bool requestActivation() const;
    void answer();

    QByteArray directory_;
    FileDescriptor lock_;
    std::unique_ptr<QLocalServer> server_;
};

} // namespace tamsy
