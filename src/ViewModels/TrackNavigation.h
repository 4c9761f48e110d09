#pragma once

#include "Models/AudioFolder.h"

#include <QList>

#include <functional>
#include <optional>

/// The decisions of the player as plain functions on values: when a track has ended and what plays
/// next. Tracks are matched by their address, never by their identity.
namespace tamsy::navigation {

/// Remaining time, in seconds, at which a track counts as ended.
inline constexpr double endThreshold = 0.15;

/// Whether a report at `time` of a file of `duration` seconds says that the track has ended. A
/// position past the duration has; a duration that isn't above 0 never has.
[[nodiscard]] bool trackHasEnded(double time, double duration, bool playing);

/// A neighbour in a list that wraps round in both directions. The first track at `current` counts
/// as the current one; if none is there, a step forward leads to the first track and a step back to
/// the last. `from` is empty then.
struct Step {
    std::optional<qsizetype> from;
    qsizetype to;
};
[[nodiscard]] std::optional<Step> stepInList(const TrackList& list, const FileURL& current,
                                             int step);

/// What shuffle picks from: the whole first folder that holds `current`, else the selected folder
/// if it has tracks, else `allTracks()`.
[[nodiscard]] TrackList shufflePool(const QList<AudioFolder>& folders,
                                    const AudioFolder* selectedFolder,
                                    const std::function<TrackList()>& allTracks,
                                    const FileURL& current);

/// One of the pool's tracks other than `current` with equal chance; `current` itself if the pool
/// holds nothing else; nothing for an empty pool. `randomBelow(n)` gives an index from 0 to n - 1.
[[nodiscard]] std::optional<FileURL>
randomTrack(const TrackList& pool, const FileURL& current,
            const std::function<qsizetype(qsizetype)>& randomBelow);

} // namespace tamsy::navigation
