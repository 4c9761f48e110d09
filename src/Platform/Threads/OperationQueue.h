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

/// A piece of work for an `OperationQueue`, shared between the queue and whoever may cancel it. Two
/// operations are the same if they are one object. It is added to one queue, once.
class Operation {
  public:
    /// `work` runs on one of the queue's threads, unless the operation is cancelled before.
    explicit Operation(std::function<void()> work) : work_(std::move(work)) {}

    /// `hook` runs on one of the queue's threads once the operation is over, in any case: behind
    /// the work, or in its stead. To be set before the operation is added.
    void setCompletionHook(std::function<void()> hook) { completionHook_ = std::move(hook); }

    /// Keeps the work from starting. Work that has started runs to its end all the same. Any
    /// thread.
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

/// Runs operations in the order in which they were added, at most so many at once, on threads of
/// its own, which start when they are first needed.
class OperationQueue {
  public:
    /// The threads bear `name`, of which the system keeps 15 bytes.
    explicit OperationQueue(std::size_t maximumConcurrentOperations, std::string name = {});

    /// A file that hasn't answered an operation for this long is taken for silent.
    static constexpr std::chrono::milliseconds longestSilence{2000};

    /// Lets an operation whose file has been silent for `silence` give up its place to the next;
    /// when the file answers after all, it goes on as soon as there is a place again. At most
    /// `mostWithoutPlace` do, the next one keeps its place. To be called before the first `add`.
    void givePlacesUpAfter(std::chrono::milliseconds silence = longestSilence);

    static constexpr std::size_t mostWithoutPlace = 16;

    /// Ends it.
    ~OperationQueue();
    OperationQueue(const OperationQueue&) = delete;
    OperationQueue& operator=(const OperationQueue&) = delete;
    OperationQueue(OperationQueue&&) = delete;
    OperationQueue& operator=(OperationQueue&&) = delete;

    enum class Place { Last, First };

    /// Any thread. Returns at once.
    void add(std::shared_ptr<Operation> operation, Place place = Place::Last);

    /// Cancels what hasn't started, now and from now on, and waits for what has. An operation that
    /// waits for the interface thread must have been let go before.
    void end();

    /// How long the program's end waits for an operation that reads the user's files: one on a
    /// dead mount may hold its reader for ever.
    static constexpr std::chrono::milliseconds patience{500};

    /// The same, but waits at most so long. False if operations were left behind: they go on with
    /// what they hold themselves, and may use nothing that ends with their owner.
    bool endWithin(std::chrono::milliseconds limit);

    /// Waits, at most so long, until no queue has anything to do, nor anything that was left
    /// behind. False if something still runs: static objects mustn't end then, since it may use
    /// them. Any thread but the queues' own.
    [[nodiscard]] static bool waitForAll(std::chrono::milliseconds limit);

  private:
    struct Shared;
    [[nodiscard]] std::vector<std::thread> takeThreads();

    const std::shared_ptr<Shared> shared_;
};

} // namespace tamsy
