#include "ViewModels/TrackNavigation.h"

#include <algorithm>

namespace tamsy::navigation {
namespace {

std::optional<qsizetype> firstIndexOf(const TrackList& list, const FileURL& url) {
    if (url.isEmpty())
        return std::nullopt;
    const auto found = std::find_if(list.cbegin(), list.cend(),
                                    [&](const Track& track) { return track.url == url; });
    return found == list.cend() ? std::nullopt : std::optional(found - list.cbegin());
}

} // namespace

bool trackHasEnded(double time, double duration, bool playing) {
    if (!(duration > 0) || !playing)
        return false;
    // Negated so that NaN counts as ended.
    return !(duration - time > endThreshold);
}

bool isNearEnd(double time, double duration, bool playing) {
    constexpr double nearEnd = 15; // seconds, in which a slow disk opens a file
    return playing && duration > 0 && duration - time < nearEnd;
}

std::optional<Step> stepInList(const TrackList& list, const FileURL& current, int step) {
    if (list.isEmpty())
        return std::nullopt;
    const qsizetype size = list.size();
    if (const auto index = firstIndexOf(list, current))
        return Step{index, (*index + step + size) % size};
    return Step{std::nullopt, step >= 1 ? 0 : size - 1};
}

TrackList shufflePool(const QList<AudioFolder>& folders, const AudioFolder* selectedFolder,
                      const std::function<TrackList()>& allTracks, const FileURL& current) {
    for (const AudioFolder& folder : folders) {
        if (firstIndexOf(folder.tracks, current))
            return folder.tracks;
    }
    if (selectedFolder != nullptr && !selectedFolder->tracks.isEmpty())
        return selectedFolder->tracks;
    return allTracks();
}

std::optional<FileURL> randomTrack(const TrackList& pool, const FileURL& current,
                                   const std::function<qsizetype(qsizetype)>& randomBelow) {
    if (pool.isEmpty())
        return std::nullopt;
    const auto isCandidate = [&](const Track& track) { return !(track.url == current); };
    const auto candidates = std::count_if(pool.cbegin(), pool.cend(), isCandidate);
    if (candidates == 0)
        return pool.constFirst().url;
    qsizetype skipped = randomBelow(candidates);
    for (const Track& track : pool) {
        if (isCandidate(track) && skipped-- == 0)
            return track.url;
    }
    return std::nullopt;
}

} // namespace tamsy::navigation
