#pragma once

#include "Formats/ByteWindow.h"
#include "Tags/ItemCollector.h"

namespace tamsy::media {

/// The state of parsing one file, shared by the parsers of all containers.
struct MediaParse {
    MediaParse(SharedSource opened, ItemCollector::Wanted wanted, bool withDuration)
        : source(std::move(opened)), window(*source), items(wanted), wantsDuration(withDuration) {}

    SharedSource source;
    ByteWindow window;
    ItemCollector items;
    bool wantsDuration;
};

/// Limits the entries (frames, chunks, atoms, comments) that are read: only a hostile file has
/// more.
constexpr int maxEntries = 10'000;

} // namespace tamsy::media
