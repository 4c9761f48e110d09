#pragma once

#include "Models/Lyrics.h"
#include "Tags/MediaAsset.h"

#include <optional>

// Lyrics among the tag items of a file. Any thread.
namespace tamsy {

/// The first lyrics in the file's ID3, iTunes and QuickTime items. An item counts if its identifier
/// says so, or if its text, or its bytes decoded as text, has a time stamp or mentions lyrics.
/// Named for the load that waits for the interface thread afterwards; this part doesn't.
[[nodiscard]] std::optional<Lyrics> readEmbeddedLyricsAVAsync(const MediaAsset& asset);

/// The lyrics under one of the usual keys of the file's info dictionary.
[[nodiscard]] std::optional<Lyrics> lyricsInInfoDictionary(const MediaAsset& asset);

} // namespace tamsy
