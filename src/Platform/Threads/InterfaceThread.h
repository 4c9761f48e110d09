#pragma once

#include <QCoreApplication>
#include <QFuture>

#include <cassert>
#include <functional>
#include <memory>
#include <optional>

namespace tamsy {

/// The thread that runs the event loop and everything the user sees.
class InterfaceThread {
  public:
    [[nodiscard]] static bool isCurrent();

    /// Runs `function` on the interface thread, in the order of the calls, once it is free. After
    /// `releaseWaiters`, or without an application, `function` is dropped. Any thread.
    static void run(std::function<void()> function);

    /// The same for a function that is `receiver`'s: it is dropped if the receiver, which lives on
    /// the interface thread, ends before. It does run after `releaseWaiters`. The caller sees to it
    /// that the receiver is there when this is called.
    static void run(QObject* receiver, std::function<void()> function);

    /// Calls `start` on the interface thread and blocks until the work that it gives has finished.
    /// Nothing if the work was cancelled or the program quits first. Not to be called on the
    /// interface thread itself: that is asserted and gives nothing.
    template <typename T>
    [[nodiscard]] static std::optional<T> waitFor(std::function<QFuture<T>()> start) {
        assert(!isCurrent());
        if (isCurrent())
            return std::nullopt;
        const auto answer = std::make_shared<std::optional<T>>();
        const auto ticket = std::make_shared<bool>(false);
        run([start = std::move(start), answer, ticket] {
            start()
                .then(
                    [answer, ticket](const T& value) { finish(ticket, [&] { *answer = value; }); })
                .onCanceled([ticket] { finish(ticket, [] {}); });
        });
        return wait(ticket) ? std::move(*answer) : std::nullopt;
    }

    /// Lets every waiter go, now and from now on, with nothing. The application calls it when it
    /// quits, before it joins any thread that may be waiting here.
    static void releaseWaiters();

    /// Whether `releaseWaiters` was called, so that an empty answer may be one that was cut short.
    [[nodiscard]] static bool isReleased();

  private:
    static void finish(const std::shared_ptr<bool>& ticket, const std::function<void()>& store);
    [[nodiscard]] static bool wait(const std::shared_ptr<bool>& ticket);
};

} // namespace tamsy
