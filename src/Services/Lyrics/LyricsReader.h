#pragma once

#include "Models/Lyrics.h"

#include <optional>

namespace tamsy {

class FileURL;

/// Finds the lyrics of an audio file: in its own tags first, then in a sidecar file beside it. The
/// first source that gives anything ends the search, plain or synced. Answers are kept for the
/// whole process, those that found nothing aside, and a change of the file isn't noticed. The
/// reader itself has no state; one is made for each load.
class LyricsReader {
  public:
    /// Blocks until the answer is known, since one step waits for the interface thread; so it may
    /// never be called there, which is asserted and gives `Lyrics::empty`. Never fails: what can't
    /// be read is passed over, but not kept. Any other thread, also several for one file.
    [[nodiscard]] Lyrics load(const FileURL& url) const;

  private:
    using Found = std::optional<Lyrics>;

    [[nodiscard]] static Found readM4AItem(const FileURL& url);
    [[nodiscard]] static Found readEmbeddedLyricsAV(const FileURL& url);
    [[nodiscard]] static Found readFlacComments(const FileURL& url);
    [[nodiscard]] static Found readEmbeddedLyrics(const FileURL& url);
};

} // namespace tamsy
