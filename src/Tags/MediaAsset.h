#pragma once

#include "Formats/ByteSource.h"
#include "Tags/MediaItem.h"

#include <QHash>

#include <vector>

namespace tamsy {

class FileURL;

/// An audio file's duration and tags, whatever its container. The format is recognised by content,
/// not by name. The file is read by the constructor; after that only `MediaItem::data()` reads it.
/// A file that can't be opened or recognised gives an asset without items. All lengths are checked
/// against the file's size; a hostile file takes milliseconds. Any thread.
class MediaAsset {
  public:
    /// How much is read.
    enum class Depth {
        CommonTexts, ///< title, artist, album and duration, as fast as possible
        Items,       ///< all items, pictures included, but no duration
        Full,        ///< everything
    };

    MediaAsset(const FileURL& url, Depth depth);

    /// Whether the file could be opened and no read has failed so far, including those of
    /// `MediaItem::data()`.
    [[nodiscard]] bool wasRead() const { return source_ && !source_->hasFailed(); }

    /// Seconds; 0 if unknown. Not finite if the file's own figures aren't.
    [[nodiscard]] double duration() const { return duration_; }

    /// The items with a common key, in file order, those of minor tags last.
    [[nodiscard]] std::vector<MediaItem> commonMetadata() const;

    /// The items of one family of tags, in file order.
    [[nodiscard]] std::vector<MediaItem> metadata(MetadataFormat format) const;

    /// Texts by key: "title", "artist", "album" and, except at `CommonTexts`, others under their
    /// own keys.
    [[nodiscard]] const QHash<QString, QString>& infoDictionary() const { return info_; }

  private:
    media::SharedSource source_;
    double duration_ = 0;
    std::vector<MediaItem> items_;
    QHash<QString, QString> info_;
};

} // namespace tamsy
