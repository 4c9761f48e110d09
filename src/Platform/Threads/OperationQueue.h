#pragma once

#include "Platform/Threads/FileWatch.h"

#include <atomic>
#include <chrono>
#include <cstddef>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace tamsy {

/// A task for an `OperationQueue`, shared between the queue and whoever may cancel it. Add it to
/// one queue, once.
class Operation {
  public:
    /// `work` runs on one of the queue's threads unless the operation is cancelled first.
    explicit Operation(std::function<void()> work) : work_(std::move(work)) {}

    /// `hook` runs on one of the queue's threads once the operation is over: after the work, or
    /// instead of it. Set it before the operation is added.
    void setCompletionHook(std::function<void()> hook) { completionHook_ = std::move(hook); }

    /// Keeps the work from starting. Work that has started isn't interrupted. Any thread.
    void cancel();

  private:
    friend class OperationQueue;
    enum class Stage : unsigned char { Waiting, Started, Cancelled };

    void run();

    std::atomic<Stage> stage_{Stage::Waiting};
    FileWatch watch_;
    std::function<void()> work_;
    std::function<void()> completionHook_;
};

/// Runs operations in the order in which they were added, a limited number at once, on threads of
/// its own, which start when they are first needed.
class OperationQueue {
  public:
    /// `name` is the threads' name; the system keeps 15 bytes of it.
    explicit OperationQueue(std::size_t maximumConcurrentOperations, std::string name = {});

    static constexpr std::chrono::milliseconds defaultSlotTimeout{2000};
    static constexpr std::size_t maxWithoutSlot = 16;

    /// Lets an operation whose system call has lasted for `timeout` give up its slot to the next
    /// one. When the call returns after all, the operation goes on as soon as a slot is free. At
    /// most `maxWithoutSlot` operations do so; the next one keeps its slot. Call it before the
    /// first `add`.
    void setSlotTimeout(std::chrono::milliseconds timeout = defaultSlotTimeout);

    /// Calls `end`.
    ~OperationQueue();
    OperationQueue(const OperationQueue&) = delete;
    OperationQueue& operator=(const OperationQueue&) = delete;
    OperationQueue(OperationQueue&&) = delete;
    OperationQueue& operator=(OperationQueue&&) = delete;

    enum class Position { Last, First };

    /// Returns at once. Any thread.
    void add(std::shared_ptr<Operation> operation, Position position = Position::Last);

    /// Cancels the operations that haven't started, and any added later, and waits for the others.
    /// Release an operation that waits for the interface thread first.
    void end();

    /// How long the program's end waits for operations that read the user's files: a dead mount may
    /// block one for ever.
    static constexpr std::chrono::milliseconds endTimeout{500};

    /// The same, but waits for at most `limit`. False if operations were abandoned: they run on and
    /// must not use anything that is destroyed with their owner.
    bool endWithin(std::chrono::milliseconds limit);

    /// Waits for at most `limit` until all operations of all queues have finished, abandoned ones
    /// included. False if one still runs: static objects that it may use must not be destroyed
    /// then. Any thread except the queues' own.
    [[nodiscard]] static bool waitForAll(std::chrono::milliseconds limit);

  private:
    struct Shared;
    [[nodiscard]] std::vector<std::thread> takeThreads();

    const std::shared_ptr<Shared> shared_;
};

} // namespace tamsy
