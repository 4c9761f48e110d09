#pragma once

#include "Models/Lyrics.h"
#include "Tags/MediaAsset.h"

#include <optional>

// Lyrics among what the media framework lists of a file. Pure but for the reading of an item's
// bytes; any thread.
namespace tamsy {

/// The first lyrics among the items of the file's ID3, iTunes and QuickTime lists. An item counts
/// by its identifier, or because its text, or its bytes taken for text, has a time stamp or speaks
/// of lyrics.
[[nodiscard]] std::optional<Lyrics> lyricsAmongItems(const MediaAsset& asset);

/// The lyrics that a file's info dictionary has under one of the usual keys.
[[nodiscard]] std::optional<Lyrics> lyricsInInfoDictionary(const MediaAsset& asset);

} // namespace tamsy
