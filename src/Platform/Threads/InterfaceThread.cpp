#include "Platform/Threads/InterfaceThread.h"

#include <QThread>

#include <condition_variable>
#include <mutex>

namespace tamsy {

namespace {

struct Waiting {
    std::mutex mutex; // guards the flag, every ticket and every answer
    std::condition_variable changed;
    bool isReleased = false;
};

// Made before the program's first step, so that it outlives every queue of operations.
Waiting waiting;

/// Posts a call, with the lock held. The call takes it too: the toolkit's own order between the two
/// doesn't show to a race detector.
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
    // The lock keeps the application from ending between the question and the post.
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
