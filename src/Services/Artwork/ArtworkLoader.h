#pragma once

#include "Platform/Threads/OperationQueue.h"
#include "Services/Metadata/AudioMetadata.h"
#include "Services/Metadata/MetadataReader.h"

#include <QByteArray>
#include <QImage>

#include <functional>
#include <memory>
#include <optional>

namespace tamsy {

class FileURL;

/// Loads covers in fixed sizes: from memory, from the cache on disk, or from the audio file by a
/// background operation, which fills both caches. A track without a cover gets the fallback cover,
/// which is cached too. Any thread; but the interface thread must never block on it, since its
/// operations wait for that thread.
class ArtworkLoader {
  public:
    /// The cached sizes. Each picture is stretched to a square of 64 or 512 pixels a side.
    enum class Variant { thumb64, medium512 };

    /// Whether a request waits for earlier ones.
    enum class Urgency { InOrder, PlayingFile };

    /// Receives the picture; null if there is none, not even a fallback.
    using Completion = std::function<void(const QImage& image)>;

    /// Where pictures come from and where they are cached. Tests pass their own.
    struct Sources {
        /// Nothing if the file couldn't be read; then the fallback cover isn't cached for it.
        std::function<std::optional<AudioMetadata>(const FileURL&)> readMetadata;
        std::function<QImage()> fallbackCover;
        QByteArray applicationSupportDirectory;
    };

    /// The program's loader, created on first use. Its operations end with the application object.
    static ArtworkLoader& shared();

    explicit ArtworkLoader(Sources sources);

    /// Calls `end`.
    ~ArtworkLoader();
    ArtworkLoader(const ArtworkLoader&) = delete;
    ArtworkLoader& operator=(const ArtworkLoader&) = delete;
    ArtworkLoader(ArtworkLoader&&) = delete;
    ArtworkLoader& operator=(ArtworkLoader&&) = delete;

    /// Requests a picture and returns its key. `completion` runs at most once: during this call if
    /// a cache has the picture, which may take a file read, otherwise later on the interface
    /// thread. It never runs if the operation is cancelled before it starts, by `cancel` or by
    /// another `load` of the same file and size: the latest request wins. While the file system
    /// doesn't respond, other requests overtake it.
    QByteArray load(const FileURL& url, Variant variant, Completion completion,
                    Urgency urgency = Urgency::InOrder);

    /// The picture if a cache has it, else null. May read a file.
    [[nodiscard]] QImage image(const FileURL& url, Variant variant);

    /// Cancels a request that hasn't started. One that has is still answered.
    void cancel(const FileURL& url, Variant variant);

    /// Cancels the operations that haven't started and waits for the others, for as long as the
    /// program's end may take. Call `InterfaceThread::releaseWaiters` first.
    void end();

  private:
    struct Caches;

    const std::shared_ptr<Caches> caches_; // an abandoned operation may outlive the loader
    OperationQueue queue_;
};

} // namespace tamsy
