#pragma once

#include "Formats/ByteWindow.h"
#include "Tags/ItemCollector.h"

namespace tamsy::media {

/// One reading of one file: what the parsers of all containers share.
struct MediaParse {
    MediaParse(SharedSource opened, ItemCollector::Wanted wanted, bool withDuration)
        : source(std::move(opened)), window(*source), items(wanted), wantsDuration(withDuration) {}

    SharedSource source;
    ByteWindow window;
    ItemCollector items;
    bool wantsDuration;
};

/// No tag has as many entries (frames, chunks, atoms, comments); a file that goes on is made to
/// keep its reader busy.
constexpr int mostEntries = 10'000;

} // namespace tamsy::media
