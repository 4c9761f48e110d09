#pragma once

#include <functional>
#include <memory>
#include <mutex>
#include <utility>
#include <vector>

namespace tamsy {

/// Ends a subscription when it is destroyed. Move-only; a default-constructed one holds none.
class Subscription {
  public:
    Subscription() = default;
    explicit Subscription(std::function<void()> end) : end_(std::move(end)) {}
    Subscription(Subscription&& other) noexcept : end_(std::exchange(other.end_, nullptr)) {}
    Subscription& operator=(Subscription&& other) noexcept {
        if (this != &other) {
            cancel();
            end_ = std::exchange(other.end_, nullptr);
        }
        return *this;
    }
    Subscription(const Subscription&) = delete;
    Subscription& operator=(const Subscription&) = delete;
    ~Subscription() { cancel(); }

    void cancel() {
        if (const auto end = std::exchange(end_, nullptr))
            end();
    }

  private:
    std::function<void()> end_;
};

/// Subscriptions that end with their owner.
using Subscriptions = std::vector<Subscription>;

template <typename T>
class ValueSubject;

/// The read-only side of a `ValueSubject`. It may outlive the subject; it then delivers the last
/// value and nothing after it.
template <typename T>
class Publisher {
  public:
    using Handler = std::function<void(const T&)>;

    /// Delivers the latest value at once, then every later one, even if equal, each on the thread
    /// that sends it. Once the returned subscription has ended on that thread, no further call
    /// begins.
    [[nodiscard]] Subscription subscribe(Handler handler) const;

    /// The latest value. Any thread.
    [[nodiscard]] T value() const {
        const std::scoped_lock lock(state_->mutex);
        return state_->value;
    }

  private:
    friend class ValueSubject<T>;
    struct State {
        explicit State(T initial) : value(std::move(initial)) {}

        std::mutex mutex; // guards everything below
        T value;
        std::vector<std::pair<unsigned, std::shared_ptr<const Handler>>> handlers;
        unsigned nextId = 0;

        [[nodiscard]] bool holds(unsigned id) {
            const std::scoped_lock lock(mutex);
            for (const auto& entry : handlers) {
                if (entry.first == id)
                    return true;
            }
            return false;
        }
    };
    explicit Publisher(std::shared_ptr<State> state) : state_(std::move(state)) {}

    std::shared_ptr<State> state_;
};

/// Holds a latest value; delivers it at once to each new subscriber, then every later value,
/// including one equal to the last. Any thread may send; threads that send to the same subject must
/// order their calls themselves. No lock is held while a handler runs.
template <typename T>
class ValueSubject {
  public:
    explicit ValueSubject(T initial)
        : publisher_(std::make_shared<typename Publisher<T>::State>(std::move(initial))) {}

    void send(T value) {
        const auto state = publisher_.state_;
        decltype(state->handlers) handlers;
        {
            const std::scoped_lock lock(state->mutex);
            state->value = value;
            handlers = state->handlers;
        }
        for (const auto& [id, handler] : handlers) {
            if (state->holds(id))
                (*handler)(value);
        }
    }

    [[nodiscard]] T value() const { return publisher_.value(); }
    [[nodiscard]] Publisher<T> publisher() const { return publisher_; }

  private:
    Publisher<T> publisher_;
};

template <typename T>
Subscription Publisher<T>::subscribe(Handler handler) const {
    const auto shared = std::make_shared<const Handler>(std::move(handler));
    unsigned id = 0;
    const T latest = [&] {
        const std::scoped_lock lock(state_->mutex);
        id = state_->nextId++;
        state_->handlers.emplace_back(id, shared);
        return state_->value;
    }();
    (*shared)(latest);
    return Subscription([weak = std::weak_ptr<State>(state_), id] {
        if (const auto state = weak.lock()) {
            const std::scoped_lock lock(state->mutex);
            std::erase_if(state->handlers, [id](const auto& entry) { return entry.first == id; });
        }
    });
}

} // namespace tamsy
