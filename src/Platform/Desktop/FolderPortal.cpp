#include "Platform/Desktop/FolderPortal.h"

#include "Platform/Desktop/Portal.h"
#include "Platform/Storage/FileDescriptor.h"

#include <QDBusObjectPath>
#include <QDBusPendingCallWatcher>

#include <algorithm>
#include <array>
#include <utility>

#include <sys/xattr.h>

namespace tamsy {
namespace {

const QString requestInterface = QStringLiteral("org.freedesktop.portal.Request");

constexpr int answerLimit = 3000; // milliseconds; the bus may have to start the portal first

/// Values of `Response`. Any other means that the panel couldn't be shown or was closed.
constexpr uint chosen = 0;
constexpr uint canceledByUser = 1;

} // namespace

FolderPortal::FolderPortal(const QDBusConnection& bus, QObject* parent)
    : QObject(parent),
      bus_(bus),
      portalEnd_(portalService, bus, QDBusServiceWatcher::WatchForUnregistration) {
    connect(&portalEnd_, &QDBusServiceWatcher::serviceUnregistered, this, [this] {
        if (!isOpen())
            return;
        close();
        qWarning("The desktop's folder panel has ended");
        Q_EMIT finished(std::nullopt);
    });
}

FolderPortal::~FolderPortal() {
    close();
}

void FolderPortal::open(const Request& request) {
    close();
    // The portal derives the request's path from our name and this token, so that we can listen
    // before the call and miss no answer.
    const QString token = QStringLiteral("tamsy%1").arg(++requests_);
    const QString caller = bus_.baseService().mid(1).replace(QLatin1Char('.'), QLatin1Char('_'));
    const QString handle = QStringLiteral("%1/request/%2/%3").arg(portalPath, caller, token);
    listen(handle);
    QDBusMessage call = QDBusMessage::createMethodCall(
        portalService, portalPath, QStringLiteral("org.freedesktop.portal.FileChooser"),
        QStringLiteral("OpenFile"));
    QByteArray startFolder = request.startFolder.path();
    startFolder.append('\0');
    parent_.emplace(request.parent);
    call.setArguments({parent_->name(), request.title,
                       QVariantMap{{QStringLiteral("handle_token"), token},
                                   {QStringLiteral("accept_label"), request.acceptLabel},
                                   {QStringLiteral("directory"), true},
                                   {QStringLiteral("current_folder"), startFolder}}});
    auto* answer = new QDBusPendingCallWatcher(bus_.asyncCall(call, answerLimit), this);
    connect(answer, &QDBusPendingCallWatcher::finished, this, [this, answer, handle] {
        answer->deleteLater();
        if (handle_ != handle)
            return; // answered already, or replaced by a later panel
        if (answer->isError()) {
            close();
            giveUp(answer->error().message());
            return;
        }
        const auto path = answer->reply().arguments().value(0).value<QDBusObjectPath>().path();
        if (path != handle) // old portals choose a path of their own
            listen(path);
    });
}

void FolderPortal::respond(uint response, const QVariantMap& results, const QDBusMessage& message) {
    if (message.path() != handle_)
        return;
    handle_.clear();
    parent_.reset();
    if (response != chosen && response != canceledByUser) {
        giveUp(QStringLiteral("it didn't come up"));
        return;
    }
    const QStringList addresses = results.value(QStringLiteral("uris")).toStringList();
    std::optional<FileURL> folder;
    if (response == chosen && !addresses.isEmpty())
        folder = FileURL::fromAbsoluteString(addresses.constFirst().toUtf8());
    // Rebuilt from its bytes, for our form of escaping.
    Q_EMIT finished(folder ? std::optional(outsideOfPortal(FileURL::fromPath(folder->path())))
                           : std::nullopt);
}

void FolderPortal::listen(const QString& handle) {
    handle_ = handle;
    bus_.connect(portalService, handle, requestInterface, QStringLiteral("Response"), this,
                 SLOT(respond(uint, QVariantMap, QDBusMessage)));
}

void FolderPortal::close() {
    if (!isOpen())
        return;
    static_cast<void>(bus_.send(QDBusMessage::createMethodCall(
        portalService, handle_, requestInterface, QStringLiteral("Close"))));
    handle_.clear();
    parent_.reset();
}

void FolderPortal::giveUp(const QString& reason) {
    if (!std::exchange(hasWarned_, true))
        qWarning("No folder panel of the desktop: %s", qPrintable(reason));
    Q_EMIT unavailable();
}

FileURL outsideOfPortal(const FileURL& folder) {
    std::array<char, 4096> path{};
    const ssize_t length = ::getxattr(folder.path().constData(), "user.document-portal.host-path",
                                      path.data(), path.size());
    QByteArray real(path.data(), std::max(length, ssize_t{0}));
    if (real.endsWith('\0')) // some portals include it
        real.chop(1);
    return real.startsWith('/') && openDirectory(real).isOpen() ? FileURL::fromPath(real) : folder;
}

} // namespace tamsy
