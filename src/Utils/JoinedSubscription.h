#pragma once

#include "Utils/ValueSubject.h"

#include <QMetaObject>
#include <QObject>

#include <cstddef>
#include <memory>
#include <mutex>
#include <tuple>

namespace tamsy {

/// Moves each value of `publisher` to `receiver`'s thread in the order of the sends, through its
/// event loop even if the sender is that thread. Nothing arrives after the receiver's end.
template <typename T, typename Handler>
[[nodiscard]] Subscription receiveOn(QObject* receiver, const Publisher<T>& publisher,
                                     Handler handler) {
    return publisher.subscribe([receiver, handler](const T& value) {
        QMetaObject::invokeMethod(
            receiver, [handler, value] { handler(value); }, Qt::QueuedConnection);
    });
}

/// Joins the latest values of several publishers: whenever one sends, `handler` gets all of them.
/// The values are those of the moment of the send; they travel to `receiver`'s thread in order, so
/// a handler never sees a later value than the one that called it.
template <typename Handler, typename... Values>
[[nodiscard]] Subscriptions receiveJoinedOn(QObject* receiver, Handler handler,
                                            const Publisher<Values>&... publishers) {
    struct Latest {
        explicit Latest(Values... initial) : values(std::move(initial)...) {}
        std::mutex mutex; // guards what follows; held while posting, so that posts keep the order
        std::tuple<Values...> values;
        std::size_t given = 0; // publishers that have delivered their first value
    };
    const auto latest = std::make_shared<Latest>(publishers.value()...);
    Subscriptions subscriptions;
    const auto join = [&]<std::size_t Index, typename T>(std::integral_constant<std::size_t, Index>,
                                                         const Publisher<T>& publisher) {
        subscriptions.push_back(
            publisher.subscribe([receiver, handler, latest, first = true](const T& value) mutable {
                const std::scoped_lock lock(latest->mutex);
                std::get<Index>(latest->values) = value;
                if (std::exchange(first, false))
                    ++latest->given;
                if (latest->given < sizeof...(Values))
                    return;
                QMetaObject::invokeMethod(
                    receiver, [handler, values = latest->values] { std::apply(handler, values); },
                    Qt::QueuedConnection);
            }));
    };
    [&]<std::size_t... Index>(std::index_sequence<Index...>) {
        (join(std::integral_constant<std::size_t, Index>(), publishers), ...);
    }
    (std::index_sequence_for<Values...>());
    return subscriptions;
}

} // namespace tamsy
