#include "Platform/OperationQueue.h"

#include <pthread.h>

#include <condition_variable>
#include <deque>
#include <utility>

namespace tamsy {
namespace {

/// What all queues together have to do. Made before the program's first step, so that it outlives
/// every thread.
struct Unfinished {
    void add() {
        const std::scoped_lock lock(mutex);
        ++operations;
    }

    void finish() {
        const std::scoped_lock lock(mutex);
        --operations;
        changed.notify_all();
    }

    std::mutex mutex; // guards the number
    std::condition_variable changed;
    std::size_t operations = 0;
} unfinished;

} // namespace

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

/// What the queue and its threads hold, so that it outlives whichever ends first.
struct OperationQueue::Shared {
    void runThread();
    void runOperations(std::unique_lock<std::mutex>& lock);

    std::mutex mutex; // guards all that follows, and the queue's threads
    std::condition_variable changed;
    std::condition_variable threadEnded;
    std::deque<std::shared_ptr<Operation>> waiting;
    std::size_t idleThreads = 0;
    std::size_t liveThreads = 0;
    bool isEnding = false;
};

OperationQueue::OperationQueue(std::size_t maximumConcurrentOperations, std::string name)
    : maximumConcurrentOperations_(maximumConcurrentOperations),
      name_(std::move(name)),
      shared_(std::make_shared<Shared>()) {}

OperationQueue::~OperationQueue() {
    end();
}

void OperationQueue::add(std::shared_ptr<Operation> operation) {
    unfinished.add();
    {
        const std::scoped_lock lock(shared_->mutex);
        if (shared_->isEnding)
            operation->cancel();
        shared_->waiting.push_back(std::move(operation));
        if (shared_->waiting.size() > shared_->idleThreads &&
            threads_.size() < maximumConcurrentOperations_)
            startThread();
    }
    shared_->changed.notify_one();
}

/// With the lock held.
void OperationQueue::startThread() {
    threads_.emplace_back([shared = shared_, name = name_] {
        constexpr std::size_t nameLimit = 15;
        if (!name.empty())
            ::pthread_setname_np(::pthread_self(), name.substr(0, nameLimit).c_str());
        shared->runThread();
    });
    ++shared_->liveThreads;
}

std::vector<std::thread> OperationQueue::takeThreads() {
    std::vector<std::thread> threads;
    {
        const std::scoped_lock lock(shared_->mutex);
        shared_->isEnding = true;
        for (const auto& operation : shared_->waiting)
            operation->cancel();
        threads.swap(threads_);
    }
    shared_->changed.notify_all();
    return threads;
}

void OperationQueue::end() {
    for (std::thread& thread : takeThreads())
        thread.join();
}

bool OperationQueue::endWithin(std::chrono::milliseconds limit) {
    std::vector<std::thread> threads = takeThreads();
    std::unique_lock lock(shared_->mutex);
    const bool haveEnded =
        shared_->threadEnded.wait_for(lock, limit, [this] { return shared_->liveThreads == 0; });
    lock.unlock();
    for (std::thread& thread : threads) {
        if (haveEnded)
            thread.join();
        else
            thread.detach();
    }
    return haveEnded;
}

bool OperationQueue::waitForAll(std::chrono::milliseconds limit) {
    std::unique_lock lock(unfinished.mutex);
    return unfinished.changed.wait_for(lock, limit, [] { return unfinished.operations == 0; });
}

void OperationQueue::Shared::runThread() {
    std::unique_lock lock(mutex);
    runOperations(lock);
    --liveThreads;
    threadEnded.notify_all();
}

void OperationQueue::Shared::runOperations(std::unique_lock<std::mutex>& lock) {
    for (;;) {
        ++idleThreads;
        changed.wait(lock, [this] { return isEnding || !waiting.empty(); });
        --idleThreads;
        if (waiting.empty())
            return;
        auto operation = std::move(waiting.front());
        waiting.pop_front();
        lock.unlock();
        operation->run();
        operation.reset();
        unfinished.finish();
        lock.lock();
    }
}

} // namespace tamsy
