#pragma once

#include "Utils/ValueSubject.h"

#include <QMetaObject>
#include <QObject>

#include <cstddef>
#include <memory>
#include <mutex>
#include <tuple>

namespace tamsy {

/// Delivers each value of `publisher` on `receiver`'s thread, in the order sent, always through the
/// event loop, even if that thread is the sender. Nothing is delivered once `receiver` is gone.
template <typename T, typename Handler>
[[nodiscard]] Subscription receiveOn(QObject* receiver, const Publisher<T>& publisher,
                                     Handler handler) {
    return publisher.subscribe([receiver, handler](const T& value) {
        QMetaObject::invokeMethod(
            receiver, [handler, value] { handler(value); }, Qt::QueuedConnection);
    });
}

/// Combines the latest values of several publishers: whenever one sends, `handler` gets all of
/// them, as they were at that moment. Delivery is on `receiver`'s thread and in order, so a handler
/// never sees a value later than the one that caused the call.
template <typename Handler, typename... Values>
[[nodiscard]] Subscriptions combineLatest(QObject* receiver, Handler handler,
                                          const Publisher<Values>&... publishers) {
    struct Latest {
        explicit Latest(Values... initial) : values(std::move(initial)...) {}
        std::mutex mutex; // guards the rest; held while posting, which keeps the order
        std::tuple<Values...> values;
        std::size_t delivered = 0; // publishers that have sent their first value
    };
    const auto latest = std::make_shared<Latest>(publishers.value()...);
    Subscriptions subscriptions;
    const auto subscribe = [&]<std::size_t Index, typename T>(
                               std::integral_constant<std::size_t, Index>,
                               const Publisher<T>& publisher) {
        subscriptions.push_back(
            publisher.subscribe([receiver, handler, latest, first = true](const T& value) mutable {
                const std::scoped_lock lock(latest->mutex);
                std::get<Index>(latest->values) = value;
                if (std::exchange(first, false))
                    ++latest->delivered;
                if (latest->delivered < sizeof...(Values))
                    return;
                QMetaObject::invokeMethod(
                    receiver, [handler, values = latest->values] { std::apply(handler, values); },
                    Qt::QueuedConnection);
            }));
    };
    [&]<std::size_t... Index>(std::index_sequence<Index...>) {
        (subscribe(std::integral_constant<std::size_t, Index>(), publishers), ...);
    }
    (std::index_sequence_for<Values...>());
    return subscriptions;
}

} // namespace tamsy
