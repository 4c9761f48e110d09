#pragma once

#include <QHashFunctions>

#include <cstddef>
#include <list>
#include <mutex>
#include <optional>
#include <unordered_map>
#include <utility>

namespace tamsy {

/// A least-recently-used cache: when the total cost would exceed the limit, the values unused for
/// longest are removed first. Values are returned by copy, so they should share their storage.
/// Any thread.
template <typename Key, typename Value>
class MemoryCache {
  public:
    /// `totalCostLimit` is in the same unit as the costs, usually bytes.
    explicit MemoryCache(std::size_t totalCostLimit) : totalCostLimit_(totalCostLimit) {}

    [[nodiscard]] std::optional<Value> object(const Key& key) {
        const std::scoped_lock lock(mutex_);
        const auto found = positions_.find(key);
        if (found == positions_.end())
            return std::nullopt;
        entries_.splice(entries_.begin(), entries_, found->second);
        return entries_.front().value;
    }

    /// Stores `value` under `key`, replacing the former value. A value that costs more than the
    /// limit isn't stored.
    void setObject(Value value, const Key& key, std::size_t cost) {
        const std::scoped_lock lock(mutex_);
        if (const auto former = positions_.find(key); former != positions_.end())
            remove(former->second);
        if (cost > totalCostLimit_)
            return;
        while (cost > totalCostLimit_ - totalCost_)
            remove(std::prev(entries_.end()));
        entries_.push_front({key, std::move(value), cost});
        positions_.emplace(key, entries_.begin());
        totalCost_ += cost;
    }

    /// The sum of the costs of all stored values.
    [[nodiscard]] std::size_t totalCost() const {
        const std::scoped_lock lock(mutex_);
        return totalCost_;
    }

  private:
    struct Entry {
        Key key;
        Value value;
        std::size_t cost;
    };
    using Position = typename std::list<Entry>::iterator;
    struct Hash {
        std::size_t operator()(const Key& key) const { return qHash(key, 0); }
    };

    void remove(Position position) {
        totalCost_ -= position->cost;
        positions_.erase(position->key);
        entries_.erase(position);
    }

    const std::size_t totalCostLimit_;
    mutable std::mutex mutex_; // guards everything below
    std::list<Entry> entries_; // most recently used first
    std::unordered_map<Key, Position, Hash> positions_;
    std::size_t totalCost_ = 0;
};

} // namespace tamsy
