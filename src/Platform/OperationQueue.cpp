#include "Platform/OperationQueue.h"

#include <pthread.h>

#include <utility>

namespace tamsy {

void Operation::cancel() {
    Stage expected = Stage::Waiting;
    stage_.compare_exchange_strong(expected, Stage::Cancelled);
}

void Operation::run() {
    Stage expected = Stage::Waiting;
    if (stage_.compare_exchange_strong(expected, Stage::Started))
        work_();
    // What the two hold ends here, not with the last one who knows the operation.
    work_ = nullptr;
    if (const auto hook = std::exchange(completionHook_, nullptr))
        hook();
}

OperationQueue::OperationQueue(std::size_t maximumConcurrentOperations, std::string name)
    : maximumConcurrentOperations_(maximumConcurrentOperations), name_(std::move(name)) {}

OperationQueue::~OperationQueue() {
    end();
}

void OperationQueue::add(std::shared_ptr<Operation> operation) {
    {
        const std::scoped_lock lock(mutex_);
        if (isEnding_)
            operation->cancel();
        waiting_.push_back(std::move(operation));
        if (waiting_.size() > idleThreads_ && threads_.size() < maximumConcurrentOperations_)
            threads_.emplace_back([this] { runThread(); });
    }
    changed_.notify_one();
}

void OperationQueue::end() {
    std::vector<std::thread> threads;
    {
        const std::scoped_lock lock(mutex_);
        isEnding_ = true;
        for (const auto& operation : waiting_)
            operation->cancel();
        threads.swap(threads_);
    }
    changed_.notify_all();
    for (std::thread& thread : threads)
        thread.join();
}

void OperationQueue::runThread() {
    constexpr std::size_t nameLimit = 15;
    if (!name_.empty())
        ::pthread_setname_np(::pthread_self(), name_.substr(0, nameLimit).c_str());
    std::unique_lock lock(mutex_);
    for (;;) {
        ++idleThreads_;
        changed_.wait(lock, [this] { return isEnding_ || !waiting_.empty(); });
        --idleThreads_;
        if (waiting_.empty())
            return;
        const auto operation = std::move(waiting_.front());
        waiting_.pop_front();
        lock.unlock();
        operation->run();
        lock.lock();
    }
}

} // namespace tamsy
