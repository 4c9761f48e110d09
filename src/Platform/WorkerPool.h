#pragma once

#include "Platform/OperationQueue.h"

#include <functional>

namespace tamsy {

/// Some threads for work that others wait for. Its owner has a pool of its own, so that nobody's
/// blocked threads can take the places of those they wait for. Its end drops what hasn't started
/// and joins what runs.
class WorkerPool {
  public:
    WorkerPool();

    /// Runs `function` on one of the threads as soon as one is free. Any thread.
    void start(std::function<void()> function);

  private:
    OperationQueue queue_;
};

} // namespace tamsy
