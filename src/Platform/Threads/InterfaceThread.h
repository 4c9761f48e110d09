#pragma once

#include <QCoreApplication>

#include <cassert>
#include <functional>
#include <memory>
#include <optional>

namespace tamsy {

/// The thread that runs the event loop and the views.
class InterfaceThread {
  public:
    [[nodiscard]] static bool isCurrent();

    /// Queues `function` for the interface thread, in the order of the calls. It is dropped after
    /// `releaseWaiters` or without an application. Any thread.
    static void run(std::function<void()> function);

    /// Queues `function` on behalf of `receiver`, which lives on the interface thread: it is
    /// dropped if the receiver is destroyed first, but runs even after `releaseWaiters`. The
    /// receiver must exist during this call.
    static void run(QObject* receiver, std::function<void()> function);

    /// Calls `function` on the interface thread and blocks until it has returned. Nothing if the
    /// program quits first. Must not be called on the interface thread (asserted, and gives
    /// nothing).
    template <typename T>
    [[nodiscard]] static std::optional<T> call(std::function<T()> function) {
        assert(!isCurrent());
        if (isCurrent())
            return std::nullopt;
        const auto answer = std::make_shared<std::optional<T>>();
        const auto ticket = std::make_shared<bool>(false);
        run([function = std::move(function), answer, ticket] {
            T value = function();
            finish(ticket, [&] { *answer = std::move(value); });
        });
        return wait(ticket) ? std::move(*answer) : std::nullopt;
    }

    /// Makes all current and future waits return nothing. The application calls it when it quits,
    /// before it joins any thread that may be waiting here.
    static void releaseWaiters();

    /// Whether `releaseWaiters` was called, so that an empty answer may mean an aborted wait.
    [[nodiscard]] static bool isReleased();

  private:
    static void finish(const std::shared_ptr<bool>& ticket, const std::function<void()>& store);
    [[nodiscard]] static bool wait(const std::shared_ptr<bool>& ticket);
};

} // namespace tamsy
