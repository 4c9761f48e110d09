#include "Platform/Threads/OperationQueue.h"

#include <pthread.h>

#include <algorithm>
#include <condition_variable>
#include <deque>
#include <list>
#include <utility>

namespace tamsy {
namespace {

/// Counts the operations of all queues.
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
};

/// Never destroyed: a thread that is stuck in a file may still use it while the program ends.
Unfinished& unfinished = *new Unfinished;

} // namespace

void Operation::cancel() {
    Stage expected = Stage::Waiting;
    stage_.compare_exchange_strong(expected, Stage::Cancelled);
}

void Operation::run() {
    Stage expected = Stage::Waiting;
    if (stage_.compare_exchange_strong(expected, Stage::Started)) {
        const FileWatch::Attachment attachment(watch_);
        work_();
    }
    // Their captures are destroyed here and not with the last reference to the operation.
    work_ = nullptr;
    if (const auto hook = std::exchange(completionHook_, nullptr))
        hook();
}

/// What the queue shares with its threads, which may outlive it.
struct OperationQueue::Shared : std::enable_shared_from_this<Shared> {
    /// A thread and the operation that it runs.
    struct Worker {
        std::thread thread;
        std::shared_ptr<Operation> operation;
    };
    using Workers = std::list<Worker>;

    Shared(std::size_t maxWorkers, std::string threadName)
        : maximumConcurrentOperations(maxWorkers), name(std::move(threadName)) {}

    [[nodiscard]] std::size_t busyWorkers() const;
    void startThread();
    void startThreadIfWanted();
    void runThread(Workers::iterator worker);
    [[nodiscard]] bool waitForOperation(std::unique_lock<std::mutex>& lock,
                                        Workers::iterator worker);
    void leave(Workers::iterator worker);
    void startWatching();
    void watch();
    [[nodiscard]] std::chrono::nanoseconds takeSlotsOfStuckWorkers();
    void reclaimSlot(Workers::iterator worker);

    const std::size_t maximumConcurrentOperations;
    const std::string name;
    std::chrono::milliseconds slotTimeout{0}; // 0: none

    std::mutex mutex; // guards everything below
    std::condition_variable changed;
    std::condition_variable threadEnded;
    std::condition_variable watcherWanted;
    std::condition_variable slotFreed;
    std::deque<std::shared_ptr<Operation>> waiting;
    Workers workers;
    Workers withoutSlot; // waiting for the file system, or for a slot after that
    std::thread watcher;
    std::size_t idleThreads = 0;
    bool isWatcherAsleep = false;
    bool isEnding = false;
};

OperationQueue::OperationQueue(std::size_t maximumConcurrentOperations, std::string name)
    : shared_(std::make_shared<Shared>(maximumConcurrentOperations, std::move(name))) {}

OperationQueue::~OperationQueue() {
    end();
}

void OperationQueue::setSlotTimeout(std::chrono::milliseconds timeout) {
    shared_->slotTimeout = timeout;
}

void OperationQueue::add(std::shared_ptr<Operation> operation, Position position) {
    unfinished.add();
    {
        const std::scoped_lock lock(shared_->mutex);
        if (shared_->isEnding)
            operation->cancel();
        if (position == Position::First)
            shared_->waiting.push_front(std::move(operation));
        else
            shared_->waiting.push_back(std::move(operation));
        shared_->startThreadIfWanted();
    }
    shared_->changed.notify_one();
}

std::vector<std::thread> OperationQueue::takeThreads() {
    std::vector<std::thread> threads;
    {
        const std::scoped_lock lock(shared_->mutex);
        shared_->isEnding = true;
        for (const auto& operation : shared_->waiting)
            operation->cancel();
        for (auto& worker : shared_->workers) {
            if (worker.thread.joinable())
                threads.push_back(std::move(worker.thread));
        }
        for (auto& worker : shared_->withoutSlot) {
            worker.operation->watch_.abandon();
            if (worker.thread.joinable())
                worker.thread.detach();
        }
        if (shared_->watcher.joinable())
            threads.push_back(std::move(shared_->watcher));
    }
    shared_->changed.notify_all();
    shared_->watcherWanted.notify_all();
    shared_->slotFreed.notify_all();
    return threads;
}

void OperationQueue::end() {
    for (std::thread& thread : takeThreads())
        thread.join();
}

bool OperationQueue::endWithin(std::chrono::milliseconds limit) {
    std::vector<std::thread> threads = takeThreads();
    std::unique_lock lock(shared_->mutex);
    const bool haveEnded = shared_->threadEnded.wait_for(
        lock, limit, [this] { return shared_->workers.empty() && shared_->withoutSlot.empty(); });
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

std::size_t OperationQueue::Shared::busyWorkers() const {
    return static_cast<std::size_t>(std::ranges::count_if(
        workers, [](const Worker& worker) { return worker.operation != nullptr; }));
}

/// Called with the lock held, as are the following functions.
void OperationQueue::Shared::startThreadIfWanted() {
    if (waiting.size() > idleThreads && workers.size() < maximumConcurrentOperations)
        startThread();
}

void OperationQueue::Shared::startThread() {
    const auto worker = workers.emplace(workers.end());
    worker->thread = std::thread([shared = shared_from_this(), worker] {
        constexpr std::size_t nameLimit = 15;
        if (!shared->name.empty())
            ::pthread_setname_np(::pthread_self(), shared->name.substr(0, nameLimit).c_str());
        shared->runThread(worker);
    });
}

void OperationQueue::Shared::startWatching() {
    if (slotTimeout.count() == 0 || isEnding)
        return;
    if (!watcher.joinable())
        watcher = std::thread([shared = shared_from_this()] { shared->watch(); });
    else if (isWatcherAsleep)
        watcherWanted.notify_one();
}

/// Returns the time until the next worker may reach its timeout.
std::chrono::nanoseconds OperationQueue::Shared::takeSlotsOfStuckWorkers() {
    std::chrono::nanoseconds next = slotTimeout;
    for (auto worker = workers.begin(); worker != workers.end();) {
        const auto current = worker++;
        if (!current->operation || withoutSlot.size() == maxWithoutSlot)
            continue;
        const auto left = slotTimeout - current->operation->watch_.callDuration();
        if (left.count() > 0) {
            next = std::min(next, left);
            continue;
        }
        current->operation->watch_.takeSlot();
        withoutSlot.splice(withoutSlot.end(), workers, current);
        startThreadIfWanted();
    }
    return next;
}

/// Runs on the worker's thread once its system call has returned.
void OperationQueue::Shared::reclaimSlot(Workers::iterator worker) {
    std::unique_lock lock(mutex);
    slotFreed.wait(lock,
                   [this] { return isEnding || busyWorkers() < maximumConcurrentOperations; });
    if (isEnding)
        return;
    worker->operation->watch_.returnSlot();
    workers.splice(workers.end(), withoutSlot, worker);
    changed.notify_all(); // an idle worker is superfluous now
}

void OperationQueue::Shared::watch() {
    std::unique_lock lock(mutex);
    while (!isEnding) {
        const bool isAnyBusy = busyWorkers() > 0;
        isWatcherAsleep = !isAnyBusy;
        if (isAnyBusy)
            watcherWanted.wait_for(lock, takeSlotsOfStuckWorkers());
        else
            watcherWanted.wait(lock);
    }
}

void OperationQueue::Shared::leave(Workers::iterator worker) {
    if (worker->thread.joinable())
        worker->thread.detach();
    workers.erase(worker);
}

/// Returns false if the thread should end.
bool OperationQueue::Shared::waitForOperation(std::unique_lock<std::mutex>& lock,
                                              Workers::iterator worker) {
    const auto isSuperfluous = [this] { return workers.size() > maximumConcurrentOperations; };
    ++idleThreads;
    changed.wait(lock, [&] { return isEnding || !waiting.empty() || isSuperfluous(); });
    --idleThreads;
    if (waiting.empty() || isSuperfluous()) {
        changed.notify_one(); // passes on a notification that this thread may have taken
        return false;
    }
    worker->operation = std::move(waiting.front());
    waiting.pop_front();
    return true;
}

void OperationQueue::Shared::runThread(Workers::iterator worker) {
    std::unique_lock lock(mutex);
    while (waitForOperation(lock, worker)) {
        worker->operation->watch_.setReclaimSlot([this, worker] { reclaimSlot(worker); });
        startWatching();
        lock.unlock();
        worker->operation->run();
        lock.lock();
        if (!worker->operation->watch_.hasSlot()) {
            // The slot was taken just after the last system call had returned.
            workers.splice(workers.end(), withoutSlot, worker);
        }
        const auto finished = std::move(worker->operation);
        slotFreed.notify_one();
        lock.unlock();
        finished->watch_.setReclaimSlot(nullptr);
        unfinished.finish();
        lock.lock();
    }
    leave(worker);
    threadEnded.notify_all();
}

} // namespace tamsy
