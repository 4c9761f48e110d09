#pragma once

#include <QByteArray>
#include <QString>

#include <functional>
#include <optional>
#include <utility>

namespace tamsy {

/// What an item means, whatever its container calls it.
enum class CommonKey { Title, Artist, AlbumName, Artwork };

/// The families of tags whose items can be listed one by one.
enum class MetadataFormat { ID3, ITunes, QuickTime };

/// One item of a file's tags. A copy shares its bytes and keeps the file open.
struct MediaItem {
    std::optional<CommonKey> commonKey;

    /// The list the item belongs to; without one it shows in the common list only.
    std::optional<MetadataFormat> format;

    /// The family and the container's own name: "id3/USLT", "itsk/©lyr", "itlk/mean.name",
    /// "mdta/com.apple.quicktime.title", "udta/©nam"; empty without a format.
    QString identifier;

    /// The key of the item's text in the info dictionary; empty if it isn't listed there.
    QString name;

    /// Absent if the value is no text. Several values of one item are joined with "; ".
    std::optional<QString> text;

    /// Reads the value's bytes. Set only at the depths that list every item.
    std::function<QByteArray()> readData;

    /// The value's bytes as the tag holds them, transport encodings undone: a frame's payload, a
    /// picture's file. Read from the file on each call, empty if that fails. Any thread.
    [[nodiscard]] QByteArray data() const { return readData ? readData() : QByteArray(); }
};

} // namespace tamsy
