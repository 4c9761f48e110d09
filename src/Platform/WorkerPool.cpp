#include "Platform/WorkerPool.h"

#include <algorithm>
#include <memory>
#include <thread>
#include <utility>

namespace tamsy {

WorkerPool::WorkerPool() : queue_(std::max(1U, std::thread::hardware_concurrency())) {}

WorkerPool::~WorkerPool() {
    queue_.endWithin(OperationQueue::patience);
}

void WorkerPool::start(std::function<void()> function) {
    queue_.add(std::make_shared<Operation>(std::move(function)));
}

} // namespace tamsy
