#pragma once

#include "Services/Metadata/AudioMetadata.h"

#include <QFuture>

#include <optional>

namespace tamsy {

class FileURL;

/// Turns an audio file into an `AudioMetadata` record. It holds no state and keeps no cache: each
/// call reads the file again, and one instance serves any number of callers on any thread. No path
/// reports a failure: a file that can't be opened or has no tags gives empty texts, a duration of 0
/// and no artwork.
class MetadataReader {
  public:
    /// Texts and duration without artwork, for the scan. Blocks for the reading; any thread.
    [[nodiscard]] AudioMetadata loadWithoutArtwork(const FileURL& url) const;

    /// Everything, without blocking. Parsing and picture decoding run on a worker; the choice among
    /// what was found, and a continuation attached without a context, run on the interface thread.
    /// The future is cancelled, and has no result, if the program quits first.
    [[nodiscard]] QFuture<AudioMetadata> loadAsync(const FileURL& url) const;

    /// The texts of `loadAsync` alone, for whoever shows a title at once: neither a picture nor the
    /// audio frames are read.
    [[nodiscard]] QFuture<AudioMetadata> loadTextsAsync(const FileURL& url) const;

    /// The same as `loadAsync`, but reads on the calling thread and blocks until the interface
    /// thread has done its part; a blank record if the program quits first. Never to be called on
    /// the interface thread, which would wait for itself: that is asserted and gives a blank
    /// record.
    [[nodiscard]] AudioMetadata load(const FileURL& url) const;

    /// The same as `load`, but nothing if the file couldn't be read to its tags' end, so that an
    /// absent artwork says nothing about the file.
    [[nodiscard]] std::optional<AudioMetadata> loadIfReadable(const FileURL& url) const;
};

} // namespace tamsy
