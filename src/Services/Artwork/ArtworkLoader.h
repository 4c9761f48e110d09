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

/// Gives covers of a fixed size, fast: from memory, from a file on disk, or read from the audio
/// file by a background operation, which fills both. A track without a cover gets the fallback
/// cover, and keeps it. Any thread may call it; nothing on the interface thread may wait for it,
/// since its operations wait for that thread.
class ArtworkLoader {
  public:
    /// The sizes that are kept; each picture is stretched to a square of 64 or 512 pixels a side.
    enum class Variant { thumb64, medium512 };

    /// Whether a request waits for those before it.
    enum class Urgency { InOrder, PlayingFile };

    /// Takes the picture; null if there is none, not even a fallback.
    using Completion = std::function<void(const QImage& image)>;

    /// Where the pictures come from and where they are kept; a test puts its own.
    struct Sources {
        /// Nothing if the file couldn't be read, so that the fallback isn't kept in its cover's
        /// place.
        std::function<std::optional<AudioMetadata>(const FileURL&)> readMetadata;
        std::function<QImage()> fallbackCover;
        QByteArray applicationSupportDirectory;
    };

    /// The program's own, made on first use. Its operations end with the application object.
    static ArtworkLoader& shared();

    explicit ArtworkLoader(Sources sources);

    /// Ends it.
    ~ArtworkLoader();
    ArtworkLoader(const ArtworkLoader&) = delete;
    ArtworkLoader& operator=(const ArtworkLoader&) = delete;
    ArtworkLoader(ArtworkLoader&&) = delete;
    ArtworkLoader& operator=(ArtworkLoader&&) = delete;

    /// Asks for a picture and gives its key. `completion` runs at most once: within this call if a
    /// cache has the picture, which may take a file read, else later on the interface thread. It
    /// never runs if the operation is cancelled before it starts, by `cancel` or by another `load`
    /// for the same file and size: the latest request wins. Nor does it run as long as the file
    /// doesn't answer; other requests then go ahead.
    QByteArray load(const FileURL& url, Variant variant, Completion completion,
                    Urgency urgency = Urgency::InOrder);

    /// The picture if a cache has it, else null. It may read a file.
    [[nodiscard]] QImage image(const FileURL& url, Variant variant);

    /// Gives up a request that hasn't started; one that has is answered all the same.
    void cancel(const FileURL& url, Variant variant);

    /// Ends the operations: those that haven't started never will, those that have are waited for,
    /// but not longer than the program's end may take. What waits for the interface thread must
    /// have been released before.
    void end();

  private:
    struct Kept;

    const std::shared_ptr<Kept> kept_; // shared with the operations, which may be left behind
    OperationQueue queue_;
};

} // namespace tamsy
