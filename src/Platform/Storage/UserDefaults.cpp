#include "Platform/Storage/UserDefaults.h"

#include "Utils/BaseDirectory.h"

#include <array>
#include <cerrno>
#include <charconv>
#include <chrono>
#include <cmath>
#include <utility>

#include <unistd.h>

namespace tamsy {
namespace {

/// How long the writer waits before it retries a failed write.
constexpr std::chrono::seconds retryInterval{30};

/// True if opening failed because the path is no regular file, so certainly no value of ours.
bool isOtherThanFile(int error) {
    return error == EISDIR || error == EINVAL || error == ENXIO || error == ELOOP;
}

} // namespace

UserDefaults& UserDefaults::standard() {
    static UserDefaults defaults(configurationDirectory());
    return defaults;
}

QByteArray UserDefaults::configurationDirectory() {
    return baseDirectory(BaseDirectory::Config) + "/Tamsy Music";
}

UserDefaults::UserDefaults(QByteArray directory) : directory_(std::move(directory)) {}

UserDefaults::~UserDefaults() {
    if (!writer_.joinable())
        return;
    drain();
    {
        const std::scoped_lock lock(mutex_);
        isEnding_ = true;
    }
    changed_.notify_all();
    writer_.join();
}

StoredFile UserDefaults::fileForKey(QByteArrayView key) const {
    return StoredFile(directory_ + '/' + key.toByteArray().toPercentEncoding());
}

std::optional<QByteArray> UserDefaults::dataForKey(QByteArrayView key) {
    {
        const std::scoped_lock lock(mutex_);
        if (const auto pending = pending_.constFind(key.toByteArray()); pending != pending_.cend())
            return pending->value;
    }
    int error = 0;
    auto content = fileForKey(key).read(error);
    const bool isMissing = error == ENOENT || error == ENOTDIR;
    const std::scoped_lock lock(mutex_);
    if (isOtherThanFile(error))
        damaged_.insert(key.toByteArray());
    else if ((error != 0 && !isMissing) || (isMissing && hasVanished()))
        unreadable_.insert(key.toByteArray());
    else
        unreadable_.remove(key.toByteArray());
    hasSeenDirectory_ |= content.has_value();
    return content;
}

bool UserDefaults::setObject(QByteArray value, QByteArrayView key) {
    const QByteArray ownKey = key.toByteArray();
    {
        const std::scoped_lock lock(mutex_);
        if (unreadable_.contains(ownKey))
            return false;
        Pending& pending = pending_[ownKey];
        pending.value = std::move(value);
        ++pending.revision;
        if (!queue_.contains(ownKey))
            queue_.append(ownKey);
        queueUnwritten();
        if (!writer_.joinable())
            writer_ = std::thread([this] { runWriter(); });
    }
    changed_.notify_all();
    Q_EMIT valueChanged(ownKey);
    return true;
}

void UserDefaults::keepPrevious(QByteArrayView key) {
    const std::scoped_lock lock(mutex_);
    previous_.insert(key.toByteArray(), pending_.value(key.toByteArray()).value);
}

std::optional<double> UserDefaults::doubleForKey(QByteArrayView key) {
    const auto data = dataForKey(key);
    if (!data)
        return std::nullopt;
    const QByteArray text = data->trimmed();
    double value = 0;
    const auto [end, error] = std::from_chars(text.begin(), text.end(), value);
    if (error == std::errc() && end == text.end() && std::isfinite(value))
        return value;
    moveAside(key);
    return std::nullopt;
}

void UserDefaults::setDouble(double value, QByteArrayView key) {
    std::array<char, 32> text{};
    const auto result = std::to_chars(text.data(), text.data() + text.size(), value);
    setObject(QByteArray(text.data(), result.ptr - text.data()), key);
}

void UserDefaults::moveAside(QByteArrayView key) {
    const std::scoped_lock lock(mutex_);
    damaged_.insert(key.toByteArray());
}

bool UserDefaults::drain() {
    std::unique_lock lock(mutex_);
    if (!writer_.joinable())
        return true;
    queueUnwritten();
    changed_.notify_all();
    changed_.wait(lock, [this] { return queue_.isEmpty() && writing_.isEmpty(); });
    return pending_.isEmpty();
}

/// Queues the values whose write has failed again. Called with the lock held.
void UserDefaults::queueUnwritten() {
    for (auto pending = pending_.keyBegin(); pending != pending_.keyEnd(); ++pending) {
        if (*pending != writing_ && !queue_.contains(*pending))
            queue_.append(*pending);
    }
}

void UserDefaults::runWriter() {
    std::unique_lock lock(mutex_);
    const auto hasWork = [this] { return isEnding_ || !queue_.isEmpty(); };
    for (;;) {
        if (pending_.isEmpty())
            changed_.wait(lock, hasWork);
        else if (!changed_.wait_for(lock, retryInterval, hasWork))
            queueUnwritten();
        if (isEnding_)
            return;
        if (queue_.isEmpty())
            continue;
        writing_ = queue_.takeFirst();
        Pending taken = pending_.value(writing_);
        lock.unlock();
        const bool isWritten = write(writing_, taken.value);
        taken.value = QByteArray(); // released in our code, which the race detector sees
        lock.lock();
        if (isWritten && pending_.value(writing_).revision == taken.revision)
            pending_.remove(writing_);
        writing_ = QByteArray();
        changed_.notify_all();
    }
}

/// True if the directory existed earlier in this run and is gone: a home on a share that went away.
/// A new one in its place would hide the library. Called with the lock held.
bool UserDefaults::hasVanished() const {
    return hasSeenDirectory_ && ::access(directory_.constData(), F_OK) != 0;
}

/// Called on the writer's thread without the lock.
bool UserDefaults::write(const QByteArray& key, const QByteArray& value) {
    const StoredFile file = fileForKey(key);
    std::unique_lock lock(mutex_);
    if (hasVanished())
        return false;
    if (damaged_.contains(key)) {
        lock.unlock();
        if (!file.keepAside())
            return false;
        lock.lock();
        damaged_.remove(key);
    }
    const bool keepsPrevious = previous_.contains(key);
    const QByteArray previous = previous_.take(key);
    lock.unlock();
    // If the copy fails, for want of room say, the value is stored all the same.
    if (keepsPrevious)
        static_cast<void>(previous.isNull() ? file.keepPrevious() : file.replacePrevious(previous));
    const bool isWritten = file.replace(value);
    lock.lock();
    hasSeenDirectory_ |= isWritten;
    return isWritten;
}

} // namespace tamsy
