#include "Platform/Threads/InterfaceThread.h"

#include <QThread>

#include <condition_variable>
#include <mutex>

namespace tamsy {

namespace {

struct Waiting {
    std::mutex mutex; // guards the flag, all tickets and all answers
    std::condition_variable changed;
    bool isReleased = false;
};

// Initialised before main, so that it outlives every operation queue.
Waiting waiting;

/// Posts a call; the lock is held. The call takes the lock too, since the race detector can't see
/// that Qt orders the two.
void post(QObject* receiver, std::function<void()> function) {
    const auto call = [function = std::move(function)] {
        { const std::scoped_lock taken(waiting.mutex); }
        function();
    };
    QMetaObject::invokeMethod(receiver, call, Qt::QueuedConnection);
}

} // namespace

bool InterfaceThread::isCurrent() {
    const QCoreApplication* application = QCoreApplication::instance();
    return application && application->thread() == QThread::currentThread();
}

void InterfaceThread::run(std::function<void()> function) {
    // The lock keeps the application alive between the check and the post.
    const std::scoped_lock lock(waiting.mutex);
    QCoreApplication* application = QCoreApplication::instance();
    if (application && !waiting.isReleased)
        post(application, std::move(function));
}

void InterfaceThread::run(QObject* receiver, std::function<void()> function) {
    const std::scoped_lock lock(waiting.mutex);
    post(receiver, std::move(function));
}

void InterfaceThread::releaseWaiters() {
    const std::scoped_lock lock(waiting.mutex);
    waiting.isReleased = true;
    waiting.changed.notify_all();
}

bool InterfaceThread::isReleased() {
    const std::scoped_lock lock(waiting.mutex);
    return waiting.isReleased;
}

void InterfaceThread::finish(const std::shared_ptr<bool>& ticket,
                             const std::function<void()>& store) {
    const std::scoped_lock lock(waiting.mutex);
    store();
    *ticket = true;
    waiting.changed.notify_all();
}

bool InterfaceThread::wait(const std::shared_ptr<bool>& ticket) {
    std::unique_lock lock(waiting.mutex);
    waiting.changed.wait(
        lock, [&] { return *ticket || waiting.isReleased || !QCoreApplication::instance(); });
    return *ticket;
}

} // namespace tamsy
