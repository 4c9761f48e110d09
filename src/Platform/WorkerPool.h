#pragma once

#include <QThreadPool>

#include <functional>
#include <mutex>

namespace tamsy {

/// Some threads for work that others wait for. Its owner has a pool of its own, so that nobody's
/// blocked threads can take the places of those they wait for. Its end joins what runs.
class WorkerPool {
  public:
    /// Runs `function` on one of the threads as soon as one is free. Any thread.
    void start(std::function<void()> function);

  private:
    std::mutex
        mutex_; // held while work is handed over, so that the hand-over shows to a race detector
    QThreadPool pool_;
};

} // namespace tamsy
