#pragma once

#include "Platform/Threads/WorkerPool.h"
#include "Services/Metadata/AudioMetadata.h"

#include <QFuture>

#include <memory>
#include <optional>
#include <utility>

namespace tamsy {

class FileURL;

/// Reads an audio file's tags into an `AudioMetadata` record. It caches nothing: each call reads
/// the file again. One instance serves any number of callers on any thread. Nothing fails: a file
/// that can't be opened or has no tags gives a blank record.
class MetadataReader {
  public:
    /// Asynchronous loads run on `workers`, which copies of the reader share. The last one drops
    /// loads that haven't started.
    explicit MetadataReader(std::shared_ptr<WorkerPool> workers = std::make_shared<WorkerPool>())
        : workers_(std::move(workers)) {}

    /// Texts and duration without artwork, for the scan. Blocks while it reads; any thread.
    [[nodiscard]] AudioMetadata loadWithoutArtwork(const FileURL& url) const;

    /// Everything, without blocking. Parsing and picture decoding run on a worker; the choice among
    /// the items found, and a continuation attached without a context, run on the interface thread.
    /// The future is cancelled if the program quits first.
    [[nodiscard]] QFuture<AudioMetadata> loadAsync(const FileURL& url) const;

    /// Only the texts of `loadAsync`, for showing a title at once: neither pictures nor audio
    /// frames are read.
    [[nodiscard]] QFuture<AudioMetadata> loadTextsAsync(const FileURL& url) const;

    /// The same as `loadAsync`, but reads on the calling thread and blocks until the interface
    /// thread has done its part; a blank record if the program quits first. Must not be called on
    /// the interface thread, which would wait for itself (asserted, and gives a blank record).
    [[nodiscard]] AudioMetadata load(const FileURL& url) const;

    /// The same as `load`, but nothing if the tags couldn't be read to their end; a missing artwork
    /// would then mean nothing.
    [[nodiscard]] std::optional<AudioMetadata> loadIfReadable(const FileURL& url) const;

  private:
    std::shared_ptr<WorkerPool> workers_;
};

} // namespace tamsy
