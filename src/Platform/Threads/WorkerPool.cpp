#include "Platform/Threads/WorkerPool.h"

#include <algorithm>
#include <memory>
#include <thread>
#include <utility>

namespace tamsy {

namespace {

/// Short, since somebody waits for the work and a slot costs only a thread.
constexpr std::chrono::milliseconds slotTimeout{250};

} // namespace

WorkerPool::WorkerPool() : queue_(std::max(1U, std::thread::hardware_concurrency()), "worker") {
    queue_.setSlotTimeout(slotTimeout);
}

WorkerPool::~WorkerPool() {
    queue_.endWithin(OperationQueue::endTimeout);
}

void WorkerPool::start(std::function<void()> function) {
    queue_.add(std::make_shared<Operation>(std::move(function)), OperationQueue::Position::First);
}

} // namespace tamsy
