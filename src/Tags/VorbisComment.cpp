#include "Tags/VorbisComment.h"

#include "Formats/FlacBlock.h"
#include "Formats/VorbisCommentWalk.h"

#include <algorithm>

namespace tamsy::media {

namespace {

constexpr std::size_t longestKey = 128;

/// The picture's own bytes in the body of a FLAC PICTURE block.
QByteArray pictureOf(const QByteArray& block) {
    const auto picture = pictureInFlacBlock(std::as_bytes(std::span(block)));
    if (!picture)
        return {};
    return {reinterpret_cast<const char*>(picture->data()),
            static_cast<qsizetype>(picture->size())};
}

std::optional<CommonKey> commonKeyOf(const QByteArray& key) {
    if (key == "TITLE")
        return CommonKey::Title;
    if (key == "ARTIST")
        return CommonKey::Artist;
    if (key == "ALBUM")
        return CommonKey::AlbumName;
    if (key == "METADATA_BLOCK_PICTURE" || key == "COVERART")
        return CommonKey::Artwork;
    return std::nullopt;
}

/// One comment: its key, and the range of its value.
struct Comment {
    QByteArray key;
    std::uint64_t value = 0;
    std::uint64_t end = 0;
};

void addComment(ItemCollector& items, const SharedSource& source, ByteWindow& window,
                const Comment& comment, std::size_t blockStart) {
    const QByteArray key = comment.key.toUpper();
    const std::uint64_t length = comment.end - comment.value;
    MediaItem item;
    item.commonKey = commonKeyOf(key);
    if (!items.wants(item.commonKey))
        return;
    if (key == "METADATA_BLOCK_PICTURE") {
        item.readData = [source, offset = comment.value, length] {
            return pictureOf(QByteArray::fromBase64(source->copy(offset, length)));
        };
        return items.add(std::move(item));
    }
    if (!items.wantsText(item.commonKey, length))
        return;
    if (!item.commonKey)
        item.name = QString::fromUtf8(comment.key);
    const TagText text = utf8Text(window.copy(comment.value, length));
    // A key that comes again carries a further value.
    if (!item.commonKey || !items.appendValue(blockStart, *item.commonKey, text))
        items.add(std::move(item), text);
}

/// Nothing if it has no key.
std::optional<Comment> split(ByteWindow& window, std::uint64_t begin, std::uint64_t end) {
    const auto head = asText(window.read(begin, std::min<std::uint64_t>(end - begin, longestKey)));
    const std::size_t sign = head.find('=');
    if (sign == 0 || sign == std::string_view::npos)
        return std::nullopt;
    return Comment{.key = QByteArray(head.data(), static_cast<qsizetype>(sign)),
                   .value = begin + sign + 1,
                   .end = end};
}

} // namespace

void readVorbisComments(ItemCollector& items, const SharedSource& source, ByteWindow& window,
                        std::uint64_t begin, std::uint64_t end) {
    const auto readLength = [&window](std::uint64_t offset) {
        return ByteCursor(window.read(offset, 4)).readU32LE();
    };
    VorbisCommentWalk walk(readLength, begin, end);
    const std::size_t blockStart = items.count();
    for (int i = 0; i < maxEntries; ++i) {
        const auto range = walk.next();
        if (!range)
            break;
        if (const auto comment = split(window, range->begin, range->end))
            addComment(items, source, window, *comment, blockStart);
    }
}

void addFlacPicture(ItemCollector& items, const SharedSource& source, std::uint64_t begin,
                    std::uint64_t end) {
    if (!items.wants(CommonKey::Artwork))
        return;
    MediaItem item;
    item.commonKey = CommonKey::Artwork;
    item.readData = [source, begin, length = end - begin] {
        return pictureOf(source->copy(begin, length));
    };
    items.add(std::move(item));
}

} // namespace tamsy::media
