#pragma once

#include "Platform/Threads/InterfaceThread.h"

#include <mutex>

namespace tamsy {

/// An object on the interface thread, for threads that may outlive it.
class InterfaceReceiver {
  public:
    explicit InterfaceReceiver(QObject* receiver) : receiver_(receiver) {}

    /// Queues `function` for the interface thread; drops it once the receiver is closed or
    /// destroyed. Any thread.
    void run(std::function<void()> function) {
        const std::scoped_lock lock(mutex_);
        if (receiver_ != nullptr)
            InterfaceThread::run(receiver_, std::move(function));
    }

    /// The receiver must call this before it is destroyed.
    void close() {
        const std::scoped_lock lock(mutex_);
        receiver_ = nullptr;
    }

  private:
    std::mutex mutex_; // guards the receiver
    QObject* receiver_;
};

} // namespace tamsy
