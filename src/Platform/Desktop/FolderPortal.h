#pragma once

#include "Platform/Desktop/PortalParent.h"
#include "Utils/FileURL.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusServiceWatcher>
#include <QObject>
#include <QString>
#include <QVariantMap>

#include <optional>

class QWindow;

namespace tamsy {

/// The desktop's own folder panel, through its portal (`org.freedesktop.portal.FileChooser`,
/// version 3). It preserves folder names as bytes. Never blocks on the bus. Interface thread.
class FolderPortal : public QObject {
    Q_OBJECT

  public:
    struct Request {
        QString title;
        QString acceptLabel;
        FileURL startFolder;
        const QWindow* parent = nullptr; ///< the panel stays above it if the desktop supports that
    };

    explicit FolderPortal(const QDBusConnection& bus = QDBusConnection::sessionBus(),
                          QObject* parent = nullptr);
    ~FolderPortal() override;

    /// Requests a panel, which replaces one that is still open. One of the two signals follows.
    void open(const Request& request);

    [[nodiscard]] bool isOpen() const { return !handle_.isEmpty(); }

  Q_SIGNALS:
    /// The user's choice; nothing if the user cancelled or the portal quit.
    void finished(const std::optional<FileURL>& folder);
    /// There is no such portal, it didn't answer in time, or it couldn't show a panel.
    void unavailable();

  private:
    Q_SLOT void respond(uint response, const QVariantMap& results, const QDBusMessage& message);
    void listen(const QString& handle);
    void close();
    void giveUp(const QString& reason);

    QDBusConnection bus_;
    QDBusServiceWatcher portalEnd_;
    QString handle_;                     // the request's path while a panel is open, else empty
    std::optional<PortalParent> parent_; // while a panel is open
    int requests_ = 0;
    bool hasWarned_ = false; // one warning is enough for a desktop without portals
};

/// The folder on the host for one that a portal exported to a sandbox, if it can be opened here;
/// otherwise `folder` itself.
[[nodiscard]] FileURL outsideOfPortal(const FileURL& folder);

} // namespace tamsy
