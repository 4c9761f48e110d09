#pragma once

#include "Models/Track.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace tamsy {

/// Some tracks of a list, in its order. The list is shared and no track is copied, so that making
/// one at each keystroke is cheap even for 100,000 tracks.
class TrackRows {
  public:
    TrackRows() = default;
    explicit TrackRows(TrackList list) : list_(std::move(list)) {}

    /// Appends the list's track at `index`.
    void append(qsizetype index) { indexes_.push_back(static_cast<int>(index)); }

    [[nodiscard]] int size() const { return static_cast<int>(indexes_.size()); }
    [[nodiscard]] const Track& at(int row) const {
        return list_.at(indexes_[static_cast<std::size_t>(row)]);
    }

    /// The first row of the track with this identity, or -1.
    [[nodiscard]] int indexOf(const QUuid& id) const {
        const auto found = std::ranges::find(
            indexes_, id, [this](int index) -> const QUuid& { return list_.at(index).id; });
        return found == indexes_.end() ? -1 : static_cast<int>(found - indexes_.begin());
    }

    /// Compares the tracks, whichever lists they come from.
    friend bool operator==(const TrackRows& a, const TrackRows& b) {
        if (a.list_.isSharedWith(b.list_))
            return a.indexes_ == b.indexes_;
        return std::ranges::equal(a.indexes_, b.indexes_, [&](int left, int right) {
            return a.list_.at(left) == b.list_.at(right);
        });
    }

  private:
    TrackList list_;
    std::vector<int> indexes_;
};

} // namespace tamsy
