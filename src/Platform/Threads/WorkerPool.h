#pragma once

#include "Platform/Threads/OperationQueue.h"

#include <functional>

namespace tamsy {

/// Some threads for work that others wait for. Its owner has a pool of its own, so that nobody's
/// blocked threads can take the places of those they wait for. The latest work starts first, and a
/// file that doesn't answer soon holds nobody up. Its end drops what hasn't started and gives what
/// runs a moment; what is stuck then is left behind.
class WorkerPool {
  public:
    WorkerPool();
    ~WorkerPool();
    WorkerPool(const WorkerPool&) = delete;
    WorkerPool& operator=(const WorkerPool&) = delete;
    WorkerPool(WorkerPool&&) = delete;
    WorkerPool& operator=(WorkerPool&&) = delete;

    /// Runs `function`, which may outlive the pool's owner, on one of the threads as soon as one
    /// is free. Any thread.
    void start(std::function<void()> function);

  private:
    OperationQueue queue_;
};

} // namespace tamsy
