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

/// The desktop's own folder panel, by its portal (`org.freedesktop.portal.FileChooser`, version 3).
/// Folder names pass through it as bytes. Nothing here waits for the bus. Interface thread.
class FolderPortal : public QObject {
    Q_OBJECT

  public:
    struct Request {
        QString title;
        QString acceptLabel;
        FileURL startFolder;
        const QWindow* parent = nullptr; ///< the panel stays above it, where the desktop lets it
    };

    explicit FolderPortal(const QDBusConnection& bus = QDBusConnection::sessionBus(),
                          QObject* parent = nullptr);
    ~FolderPortal() override;

    /// Asks for a panel, in place of one that is still open. One of the two signals follows.
    void open(const Request& request);

    [[nodiscard]] bool isOpen() const { return !handle_.isEmpty(); }

  Q_SIGNALS:
    /// The user's choice, or nothing if the user chose none or the portal has ended.
    void finished(const std::optional<FileURL>& folder);
    /// There is no such portal, it didn't answer in time, or it could show no panel.
    void unavailable();

  private:
    Q_SLOT void respond(uint response, const QVariantMap& results, const QDBusMessage& message);
    void listen(const QString& handle);
    void close();
    void giveUp(const QString& reason);

    QDBusConnection bus_;
    QDBusServiceWatcher portalEnd_;
    QString handle_;                     // path of the request while a panel is open, else empty
    std::optional<PortalParent> parent_; // while a panel is open
    int requests_ = 0;
    bool hasWarned_ = false; // a desktop without portals has none at the next request either
};

/// The real folder of one that a portal passes into a sandbox, where that can be opened here;
/// otherwise `folder` itself.
[[nodiscard]] FileURL outsideOfPortal(const FileURL& folder);

} // namespace tamsy
