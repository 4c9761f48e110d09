#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>
#include <functional>
#include <utility>

namespace tamsy {

/// Measures how long a task has been waiting for the file system, to tell slow work from a file
/// system that doesn't respond. A thread that is stuck in a system call can't be interrupted, but
/// its slot can be given to another task. Any thread.
class FileWatch {
  public:
    /// Attaches a watch to the calling thread while it lives.
    class Attachment {
      public:
        explicit Attachment(FileWatch& watch);
        ~Attachment();
        Attachment(const Attachment&) = delete;
        Attachment& operator=(const Attachment&) = delete;
        Attachment(Attachment&&) = delete;
        Attachment& operator=(Attachment&&) = delete;
    };

    /// Spans a system call that the file system has to answer (open, read, list). Nearly free on a
    /// thread without a watch.
    class Call {
      public:
        Call();
        ~Call();
        Call(const Call&) = delete;
        Call& operator=(const Call&) = delete;
        Call(Call&&) = delete;
        Call& operator=(Call&&) = delete;

      private:
        FileWatch* watch_;
    };

    /// How long the current call has lasted; 0 between calls.
    [[nodiscard]] std::chrono::nanoseconds callDuration() const;

    /// Takes the task's slot away during a call. When the call returns after all, `reclaimSlot`
    /// runs on the task's thread before it goes on.
    void takeSlot() { hasSlot_.store(false, std::memory_order_release); }
    void returnSlot() { hasSlot_.store(true, std::memory_order_relaxed); }
    [[nodiscard]] bool hasSlot() const { return hasSlot_.load(std::memory_order_acquire); }

    /// `reclaimSlot` blocks until the task has a slot again. Set it before the task starts.
    void setReclaimSlot(std::function<void()> reclaimSlot) {
        reclaimSlot_ = std::move(reclaimSlot);
    }

    /// From now on the task's result isn't wanted and its reads fail.
    void abandon() { isAbandoned_.store(true, std::memory_order_relaxed); }

    /// Whether the calling thread's task was abandoned.
    [[nodiscard]] static bool isCurrentAbandoned();

  private:
    std::atomic<std::int64_t> callStart_{0}; // nanoseconds of the steady clock; 0 between calls
    std::atomic<bool> hasSlot_{true};
    std::atomic<bool> isAbandoned_{false};
    std::function<void()> reclaimSlot_;
};

} // namespace tamsy
