#pragma once

#include "Platform/Storage/FileDescriptor.h"

#include <QByteArray>
#include <QObject>

#include <memory>

class QLocalServer;

namespace tamsy {

/// Sees to it that one program at a time works on a configuration directory, since the library that
/// lies there takes one writer. A second start asks the first to show its window and ends. Programs
/// with different configuration directories run side by side.
///
/// The lock is one that the system takes back when the process ends, in whichever way. It lies in
/// the configuration directory itself, so that every start that could write there meets it, in
/// another session or with another runtime directory too; the socket lies in the runtime directory,
/// and the locked file tells where. This object must outlive the last write.
class SingleInstance : public QObject {
    Q_OBJECT

  public:
    /// `configurationDirectory` is a path in bytes; it is made if it is missing.
    explicit SingleInstance(QByteArray configurationDirectory, QObject* parent = nullptr);
    ~SingleInstance() override;

    /// True if this is the only program, which it stays until this object's end. False if another
    /// runs: it has been asked to show itself, and this one has to end. Waits for one that is about
    /// to end or that doesn't answer, at most five seconds. Needs no application object, so that
    /// a second start is over before it opens anything.
    [[nodiscard]] bool acquire();

    /// From now on a second start is answered. Needs the application object; after `acquire()`.
    void listen();

  Q_SIGNALS:
    /// A second start asks for the window. `activationToken` is what its environment gave it to
    /// hand the focus on with (XDG_ACTIVATION_TOKEN, else DESKTOP_STARTUP_ID), or empty.
    void activationRequested(const QByteArray& activationToken);

  private:
    [[nodiscard]] bool askTheFirst() const;
    void answer();

    QByteArray directory_;
    FileDescriptor lock_;
    std::unique_ptr<QLocalServer> server_;
};

} // namespace tamsy
