#pragma once

#include <QHashFunctions>

#include <cstddef>
#include <list>
#include <mutex>
#include <optional>
#include <unordered_map>
#include <utility>

namespace tamsy {

/// Values under keys, kept as long as the memory set aside for them allows: when the costs exceed
/// the limit, the values that weren't asked for the longest go first. A value is handed out as a
/// copy, so it should share its storage. Any thread.
template <typename Key, typename Value>
class MemoryCache {
  public:
    /// `totalCostLimit` is in the unit of the costs, as a rule bytes.
    explicit MemoryCache(std::size_t totalCostLimit) : totalCostLimit_(totalCostLimit) {}

    [[nodiscard]] std::optional<Value> object(const Key& key) {
        const std::scoped_lock lock(mutex_);
        const auto found = places_.find(key);
        if (found == places_.end())
            return std::nullopt;
        entries_.splice(entries_.begin(), entries_, found->second);
        return entries_.front().value;
    }

    /// Keeps `value` in place of what stood under `key`. One that costs more than the limit isn't
    /// kept.
    void setObject(Value value, const Key& key, std::size_t cost) {
        const std::scoped_lock lock(mutex_);
        if (const auto former = places_.find(key); former != places_.end())
            remove(former->second);
        if (cost > totalCostLimit_)
            return;
        while (cost > totalCostLimit_ - totalCost_)
            remove(std::prev(entries_.end()));
        entries_.push_front({key, std::move(value), cost});
        places_.emplace(key, entries_.begin());
        totalCost_ += cost;
    }

    /// The costs of all that is kept.
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
    using Place = typename std::list<Entry>::iterator;
    struct Hash {
        std::size_t operator()(const Key& key) const { return qHash(key, 0); }
    };

    void remove(Place place) {
        totalCost_ -= place->cost;
        places_.erase(place->key);
        entries_.erase(place);
    }

    const std::size_t totalCostLimit_;
    mutable std::mutex mutex_; // guards all that follows
    std::list<Entry> entries_; // the one asked for last in front
    std::unordered_map<Key, Place, Hash> places_;
    std::size_t totalCost_ = 0;
};

} // namespace tamsy
