#pragma once

#include "Formats/ByteSource.h"
#include "Tags/MediaItem.h"

#include <QHash>

#include <vector>

namespace tamsy {

class FileURL;

/// An audio file's own account of itself: its length and its tags, whatever its container. The file
/// is recognised by its content, not by its name, and is read when the asset is made; nothing reads
/// it later but `MediaItem::data()`. A file that can't be opened or isn't recognised gives an asset
/// without items. Lengths in the file that lie are held against the file; a hostile one costs
/// milliseconds. Any thread.
class MediaAsset {
  public:
    /// How much is read.
    enum class Depth {
        CommonTexts, ///< title, artist, album and duration, as fast as can be
        Items,       ///< every item, pictures and their places too, but no duration
        Full,        ///< all of it
    };

    MediaAsset(const FileURL& url, Depth depth);

    /// Whether the file could be opened and no read of it has failed so far, those of items' bytes
    /// counted.
    [[nodiscard]] bool wasRead() const { return source_ && !source_->hasFailed(); }

    /// Seconds; 0 if it isn't known. Not finite where a file's own figures aren't.
    [[nodiscard]] double duration() const { return duration_; }

    /// The items with a common key, in file order, those of a poorer tag last.
    [[nodiscard]] std::vector<MediaItem> commonMetadata() const;

    /// The items of one family of tags, in file order.
    [[nodiscard]] std::vector<MediaItem> metadata(MetadataFormat format) const;

    /// The texts that have a name: "title", "artist", "album" and, beyond the shallowest depth,
    /// those of comments and the like under their own keys.
    [[nodiscard]] const QHash<QString, QString>& infoDictionary() const { return info_; }

  private:
    media::SharedSource source_;
    double duration_ = 0;
    std::vector<MediaItem> items_;
    QHash<QString, QString> info_;
};

} // namespace tamsy
