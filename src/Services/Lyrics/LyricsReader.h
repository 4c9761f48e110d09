#pragma once

#include "Models/Lyrics.h"

#include <optional>

namespace tamsy {

class FileURL;

/// Finds the lyrics of an audio file: first in its tags, then in a sidecar file. The first source
/// that has any, plain or synced, ends the search. Lyrics are cached until the process ends, even
/// if the file changes; a search without a result isn't. The reader has no state; each load makes
/// its own.
class LyricsReader {
  public:
    /// Blocks; one step waits for the interface thread, so it must not be called there (asserted,
    /// and gives `Lyrics::empty`). A source that can't be read counts as empty. Any other thread,
    /// even several for one file.
    [[nodiscard]] Lyrics load(const FileURL& url) const;

  private:
    using Found = std::optional<Lyrics>;

    [[nodiscard]] static Found readM4AItem(const FileURL& url);
    [[nodiscard]] static Found readEmbeddedLyricsAV(const FileURL& url);
    [[nodiscard]] static Found readFlacComments(const FileURL& url);
    [[nodiscard]] static Found readEmbeddedLyrics(const FileURL& url);
};

} // namespace tamsy
