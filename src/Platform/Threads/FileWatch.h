#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>
#include <functional>
#include <utility>

namespace tamsy {

/// Knows how long a piece of work has been waiting for the file system, so that whoever runs it can
/// tell slow work from a file that doesn't answer. A thread that is stuck in such a call can't be
/// interrupted; but its place can be given to another. Any thread.
class FileWatch {
  public:
    /// Makes a watch the calling thread's while it lives.
    class Attachment {
      public:
        explicit Attachment(FileWatch& watch);
        ~Attachment();
        Attachment(const Attachment&) = delete;
        Attachment& operator=(const Attachment&) = delete;
        Attachment(Attachment&&) = delete;
        Attachment& operator=(Attachment&&) = delete;
    };

    /// Stands around each system call that a file system has to answer: open, read, list. Costs
    /// next to nothing on a thread without a watch.
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

    /// How long the call that is on its way has lasted; 0 between calls.
    [[nodiscard]] std::chrono::nanoseconds silence() const;

    /// Takes the work's place away while a call is on its way: when the file answers after all,
    /// `regainPlace` runs on the work's thread before it goes on.
    void takePlaceAway() { hasPlace_.store(false, std::memory_order_release); }
    void givePlaceBack() { hasPlace_.store(true, std::memory_order_relaxed); }
    [[nodiscard]] bool hasPlace() const { return hasPlace_.load(std::memory_order_acquire); }

    /// Waits until the work has a place again. To be set before the work begins.
    void setRegainPlace(std::function<void()> regainPlace) {
        regainPlace_ = std::move(regainPlace);
    }

    /// From now on nobody wants the work's result, and its reads fail.
    void abandon() { isAbandoned_.store(true, std::memory_order_relaxed); }

    /// Whether the calling thread's work was abandoned.
    [[nodiscard]] static bool isCurrentAbandoned();

  private:
    std::atomic<std::int64_t> callStart_{0}; // nanoseconds of the steady clock; 0 between calls
    std::atomic<bool> hasPlace_{true};
    std::atomic<bool> isAbandoned_{false};
    std::function<void()> regainPlace_;
};

} // namespace tamsy
