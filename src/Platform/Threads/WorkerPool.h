#pragma once

#include "Platform/Threads/OperationQueue.h"

#include <functional>

namespace tamsy {

/// Threads for work that somebody waits for. Each owner has its own pool, so that blocked threads
/// can't occupy the slots of those they wait for. The latest work starts first, and a file system
/// that doesn't respond holds up no other work. The destructor drops work that hasn't started and
/// waits a moment for the rest, then abandons it.
class WorkerPool {
  public:
    WorkerPool();
    ~WorkerPool();
    WorkerPool(const WorkerPool&) = delete;
    WorkerPool& operator=(const WorkerPool&) = delete;
    WorkerPool(WorkerPool&&) = delete;
    WorkerPool& operator=(WorkerPool&&) = delete;

    /// Runs `function`, which may outlive the pool, as soon as a thread is free. Any thread.
    void start(std::function<void()> function);

  private:
    OperationQueue queue_;
};

} // namespace tamsy
