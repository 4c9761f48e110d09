#include "Platform/Threads/WorkerPool.h"

#include <algorithm>
#include <memory>
#include <thread>
#include <utility>

namespace tamsy {

namespace {

/// Somebody waits for the work, and a slow disk's place costs no more than a thread.
constexpr std::chrono::milliseconds longestSilence{250};

} // namespace

WorkerPool::WorkerPool() : queue_(std::max(1U, std::thread::hardware_concurrency()), "worker") {
    queue_.givePlacesUpAfter(longestSilence);
}

WorkerPool::~WorkerPool() {
    queue_.endWithin(OperationQueue::patience);
}

void WorkerPool::start(std::function<void()> function) {
    queue_.add(std::make_shared<Operation>(std::move(function)), OperationQueue::Place::First);
}

} // namespace tamsy
