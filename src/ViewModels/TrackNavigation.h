#pragma once

#include "Models/AudioFolder.h"

#include <QList>

#include <functional>
#include <optional>

/// The player's decisions as pure functions: when a track has ended and what plays next. Tracks are
/// matched by their address, never by their identity.
namespace tamsy::navigation {

/// Remaining time, in seconds, at which a track counts as ended.
inline constexpr double endThreshold = 0.15;

/// Whether a file of `duration` seconds has ended, given a reported position. A position past the
/// duration has; a file whose duration isn't above 0 never has.
[[nodiscard]] bool trackHasEnded(double time, double duration, bool playing);

/// Whether so little of a playing file remains that the next one should be opened.
[[nodiscard]] bool isNearEnd(double time, double duration, bool playing);

/// A step in a list that wraps round in both directions. The first track at `current` counts as the
/// current one; if there is none, a step forward leads to the first track, a step back to the last,
/// and `from` is empty.
struct Step {
    std::optional<qsizetype> from;
    qsizetype to;
};
[[nodiscard]] std::optional<Step> stepInList(const TrackList& list, const FileURL& current,
                                             int step);

/// What shuffle picks from: all tracks of the first folder that contains `current`, else those of
/// the selected folder if it has any, else `allTracks()`.
[[nodiscard]] TrackList shufflePool(const QList<AudioFolder>& folders,
                                    const AudioFolder* selectedFolder,
                                    const std::function<TrackList()>& allTracks,
                                    const FileURL& current);

/// One of the pool's tracks other than `current`, each equally likely; `current` itself if the pool
/// has nothing else; nothing if it is empty. `randomBelow(n)` returns an index from 0 to n - 1.
[[nodiscard]] std::optional<FileURL>
randomTrack(const TrackList& pool, const FileURL& current,
            const std::function<qsizetype(qsizetype)>& randomBelow);

} // namespace tamsy::navigation
