#include "Platform/Desktop/SingleInstance.h"

#include "Platform/Storage/StoredFile.h"

#include <QCoreApplication>
#include <QCryptographicHash>
#include <QFile>
#include <QLocalServer>
#include <QLocalSocket>

#include <chrono>
#include <cstring>
#include <fcntl.h>
#include <poll.h>
#include <sys/file.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <thread>
#include <utility>

namespace tamsy {
namespace {

using Clock = std::chrono::steady_clock;

constexpr std::chrono::seconds answerTimeout{5};
constexpr std::chrono::milliseconds retryInterval{20};
constexpr qsizetype maxSocketPathSize = sizeof(sockaddr_un::sun_path) - 1;
constexpr qint64 maxRequestSize = 4096;

constexpr qsizetype maxSocketNameSize = 32;

/// Whether `path` is, maybe from now on, a directory that only the user can access.
bool isPrivateDirectory(const QByteArray& path) {
    struct stat status {};
    return makeDirectories(path) && ::lstat(path.constData(), &status) == 0 &&
           S_ISDIR(status.st_mode) && status.st_uid == ::getuid() &&
           (status.st_mode & (S_IRWXG | S_IRWXO)) == 0;
}

/// The socket for `configurationDirectory`; empty if there is no safe directory for it.
QByteArray socketPath(const QByteArray& configurationDirectory) {
    const QByteArray directory = SingleInstance::socketDirectory();
    const QByteArray hash =
        QCryptographicHash::hash(configurationDirectory, QCryptographicHash::Sha1).toHex();
    return directory.isEmpty() ? directory : directory + '/' + hash.first(16);
}

QByteArray activationToken() {
    const QByteArray token = qgetenv("XDG_ACTIVATION_TOKEN");
    return token.isEmpty() ? qgetenv("DESKTOP_STARTUP_ID") : token;
}

FileDescriptor connectTo(const QByteArray& path) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (path.isEmpty() || path.size() > maxSocketPathSize)
        return {};
    std::memcpy(address.sun_path, path.constData(), static_cast<std::size_t>(path.size()));
    FileDescriptor socket(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
    // The socket API takes all kinds of addresses through this type.
    const auto* general = reinterpret_cast<const sockaddr*>(&address); // NOLINT
    if (!socket.isOpen() || ::connect(socket.number(), general, sizeof address) != 0)
        return {};
    return socket;
}

} // namespace

SingleInstance::SingleInstance(QByteArray configurationDirectory, QObject* parent)
    : QObject(parent), directory_(std::move(configurationDirectory)) {}

SingleInstance::~SingleInstance() = default;

bool SingleInstance::acquire() {
    if (!makeDirectories(directory_))
        return true; // nothing can be written, so there is nothing to guard
    const QByteArray path = directory_ + "/.lock";
    lock_ = FileDescriptor(
        ::open(path.constData(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, S_IRUSR | S_IWUSR));
    if (!lock_.isOpen())
        lock_ = openDirectory(directory_);
    const auto deadline = Clock::now() + answerTimeout;
    do {
        if (!lock_.isOpen() || ::flock(lock_.number(), LOCK_EX | LOCK_NB) == 0)
            return true;
        if (errno != EWOULDBLOCK && errno != EINTR)
            return true; // a file system without locks
        if (requestActivation())
            return false;
        std::this_thread::sleep_for(retryInterval);
    } while (Clock::now() < deadline);
    return false;
}

/// Whether the program that holds the lock has answered.
bool SingleInstance::requestActivation() const {
    const auto path = StoredFile(directory_ + "/.lock").read();
    const FileDescriptor socket = connectTo(path.value_or(QByteArray()));
    const QByteArray request = activationToken().left(maxRequestSize - 1) + '\n';
    if (!socket.isOpen() ||
        ::send(socket.number(), request.constData(), static_cast<std::size_t>(request.size()),
               MSG_NOSIGNAL) != request.size())
        return false;
    pollfd reply{socket.number(), POLLIN, 0};
    const auto limit = std::chrono::duration_cast<std::chrono::milliseconds>(answerTimeout);
    char byte = 0;
    return ::poll(&reply, 1, static_cast<int>(limit.count())) == 1 &&
           ::recv(socket.number(), &byte, 1, 0) == 1;
}

QByteArray SingleInstance::socketDirectory() {
    const QByteArray runtime = qgetenv("XDG_RUNTIME_DIR");
    QByteArray own = runtime + "/tamsy-music";
    if (runtime.startsWith('/') && ::access(runtime.constData(), W_OK | X_OK) == 0 &&
        own.size() + maxSocketNameSize <= maxSocketPathSize && isPrivateDirectory(own))
        return own;
    // For a session without a runtime directory.
    const QByteArray fallback = "/tmp/tamsy-music-" + QByteArray::number(::getuid());
    return isPrivateDirectory(fallback) ? fallback : QByteArray();
}

void SingleInstance::listen() {
    const QByteArray path = socketPath(directory_);
    const QString name = QFile::decodeName(path);
    if (path.isEmpty() || QFile::encodeName(name) != path)
        return;
    QLocalServer::removeServer(name); // left by a killed run, since we hold the lock
    server_ = std::make_unique<QLocalServer>();
    server_->setSocketOptions(QLocalServer::UserAccessOption);
    // After this nothing would answer; a second start then waits for the lock.
    connect(QCoreApplication::instance(), &QCoreApplication::aboutToQuit, this,
            [this] { server_.reset(); });
    connect(server_.get(), &QLocalServer::newConnection, this, &SingleInstance::answer);
    if (!server_->listen(name) || !lock_.isOpen())
        return;
    (void)!::ftruncate(lock_.number(), 0);
    (void)!::pwrite(lock_.number(), path.constData(), static_cast<std::size_t>(path.size()), 0);
}

void SingleInstance::answer() {
    while (QLocalSocket* client = server_->nextPendingConnection()) {
        client->setReadBufferSize(maxRequestSize);
        connect(client, &QLocalSocket::disconnected, client, &QObject::deleteLater);
        connect(client, &QLocalSocket::readyRead, this, [this, client] {
            if (!client->canReadLine())
                return;
            Q_EMIT activationRequested(client->readLine(maxRequestSize).trimmed());
            client->write("\n");
            client->disconnectFromServer();
        });
    }
}

} // namespace tamsy
