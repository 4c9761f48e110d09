#pragma once

#include <QByteArray>
#include <QString>

#include <functional>
#include <optional>
#include <utility>

namespace tamsy {

/// What an item means, whatever its container calls it.
enum class CommonKey { Title, Artist, AlbumName, Artwork };

/// The tag formats whose items are listed.
enum class MetadataFormat { ID3, ITunes, QuickTime };

/// One entry of a file's tags. Copies share its bytes and keep the file open.
struct MediaItem {
    std::optional<CommonKey> commonKey;

    /// The list that the item belongs to; without one it is only in the common list.
    std::optional<MetadataFormat> format;

    /// The format and the container's own name: "id3/USLT", "itsk/©lyr", "itlk/mean.name",
    /// "mdta/com.apple.quicktime.title", "udta/©nam"; empty without a format.
    QString identifier;

    /// The key of the item's text in the info dictionary; empty if it has none.
    QString name;

    /// Absent if the value isn't text. Several values are joined with "; ".
    std::optional<QString> text;

    /// Reads the value's bytes. Set only at depths that list all items.
    std::function<QByteArray()> readData;

    /// The value's bytes, decompressed and without unsynchronisation: a frame's payload, a picture.
    /// Reads the file at each call; empty if that fails. Any thread.
    [[nodiscard]] QByteArray data() const { return readData ? readData() : QByteArray(); }
};

} // namespace tamsy
