#include "Tags/Ape.h"

#include "Formats/ApeTag.h"

#include <algorithm>

namespace tamsy::media {

namespace {

constexpr std::uint64_t id3v1Size = 128;

/// The bytes of a tag at the end of a file that are read; covers in it are skipped.
struct ItemRange {
    std::uint64_t begin = 0;
    std::uint64_t end = 0;
    ApeFooter footer;
};

std::optional<ItemRange> findTag(ByteWindow& window) {
    constexpr std::uint64_t farthest = ApeFooter::size + id3v1Size;
    // One read covers both positions and the ID3v1 tag.
    if (window.size() > farthest)
        static_cast<void>(window.readUpTo(window.size() - farthest, farthest));
    for (const std::uint64_t trailing : {std::uint64_t{0}, id3v1Size}) {
        if (window.size() < trailing + ApeFooter::size)
            continue;
        const std::uint64_t end = window.size() - trailing - ApeFooter::size;
        const auto footer = parseApeFooter(window.read(end, ApeFooter::size));
        if (footer && footer->itemBytes <= end)
            return ItemRange{.begin = end - footer->itemBytes, .end = end, .footer = *footer};
    }
    return std::nullopt;
}

std::optional<CommonKey> commonKeyOf(const QByteArray& key) {
    constexpr std::pair<const char*, CommonKey> keys[] = {
        {"title", CommonKey::Title},
        {"artist", CommonKey::Artist},
        {"album", CommonKey::AlbumName},
        {"cover art (front)", CommonKey::Artwork},
    };
    const QByteArray lower = key.toLower();
    for (const auto& [name, common] : keys) {
        if (lower == name)
            return common;
    }
    return std::nullopt;
}

/// The picture, which follows its file name.
QByteArray pictureOf(const QByteArray& value) {
    return value.sliced(std::min(value.indexOf('\0') + 1, value.size()));
}

void addItem(MediaParse& parse, const ApeItem& apeItem, std::uint64_t value, bool isUtf8) {
    MediaItem item;
    item.commonKey = commonKeyOf(apeItem.key);
    if (!parse.items.wants(item.commonKey))
        return;
    if (item.commonKey == CommonKey::Artwork) {
        item.readData = [source = parse.source, value, size = apeItem.valueSize] {
            return pictureOf(source->copy(value, size));
        };
        return parse.items.add(std::move(item));
    }
    if (!apeItem.isText || !parse.items.wantsText(item.commonKey, apeItem.valueSize))
        return;
    if (!item.commonKey)
        item.name = QString::fromLatin1(apeItem.key);
    const QByteArray bytes = parse.window.copy(value, apeItem.valueSize);
    parse.items.add(std::move(item), isUtf8 ? utf8Text(bytes) : legacyText(bytes));
}

} // namespace

void readApeTag(MediaParse& parse) {
    const auto tag = findTag(parse.window);
    if (!tag)
        return;
    std::uint64_t position = tag->begin;
    for (std::uint32_t i = 0; i < tag->footer.items && i < maxEntries; ++i) {
        const auto item = parseApeItem(parse.window.readUpTo(
            position, std::min<std::uint64_t>(ApeItem::largestHeader, tag->end - position)));
        if (!item || item->valueSize > tag->end - position - item->headerSize)
            return;
        addItem(parse, *item, position + item->headerSize, tag->footer.isUtf8);
        position += item->headerSize + item->valueSize;
    }
}

} // namespace tamsy::media
