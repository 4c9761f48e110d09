#include "Tags/ItemCollector.h"

#include "Formats/LegacyText.h"
#include "Utils/TextTrimming.h"

#include <algorithm>
#include <span>

namespace tamsy::media {

namespace {

constexpr std::uint64_t longestCommonText = std::uint64_t{64} * 1024;
constexpr std::uint64_t allCommonTexts = std::uint64_t{256} * 1024;
constexpr std::uint64_t allTexts = std::uint64_t{8} * 1024 * 1024;
constexpr int maxValues = 100;
constexpr std::size_t maxCommonItems = 100;
constexpr std::size_t maxItems = 10'000;

/// Whether the text has more than white space.
bool hasText(const MediaItem& item) {
    return item.text && !trimmedOfWhitespaceAndNewlines(*item.text).isEmpty();
}

/// Whether the text goes into the info dictionary: a title, artist or album must not be blank, any
/// other text must not be empty.
bool isNamed(const MediaItem& item) {
    const bool isOfTrack = item.name == u"title" || item.name == u"artist" || item.name == u"album";
    return isOfTrack ? hasText(item) : item.text && !item.text->isEmpty();
}

QString infoName(CommonKey key) {
    switch (key) {
    case CommonKey::Title:
        return QStringLiteral("title");
    case CommonKey::Artist:
        return QStringLiteral("artist");
    case CommonKey::AlbumName:
        return QStringLiteral("album");
    case CommonKey::Artwork:
        break;
    }
    return {};
}

} // namespace

ItemCollector::ItemCollector(Wanted wanted)
    : wanted_(wanted), textBudget_(wanted == Wanted::Everything ? allTexts : allCommonTexts) {}

bool ItemCollector::wants(std::optional<CommonKey> key) const {
    if (wanted_ == Wanted::Everything)
        return found_.size() < maxItems;
    return key && *key != CommonKey::Artwork && found_.size() < maxCommonItems;
}

std::uint64_t ItemCollector::maxTextSize(std::optional<CommonKey> key) const {
    const bool isCommonText = key && *key != CommonKey::Artwork;
    return isCommonText ? std::min(longestCommonText, textBudget_) : textBudget_;
}

bool ItemCollector::wantsText(std::optional<CommonKey> key, std::uint64_t length) {
    if (!wants(key) || length > maxTextSize(key))
        return false;
    textBudget_ -= length;
    return true;
}

void ItemCollector::add(MediaItem item) {
    if (item.commonKey)
        item.name = infoName(*item.commonKey);
    found_.push_back({.item = std::move(item), .rawBytes = {}});
}

void ItemCollector::add(MediaItem item, TagText text) {
    item.text = joinedValues(text.decoded);
    add(std::move(item));
    found_.back().rawBytes = std::move(text.rawBytes);
}

void ItemCollector::addFallback(CommonKey key, TagText text) {
    if (text.decoded.isEmpty() && text.rawBytes.isEmpty())
        return;
    MediaItem item;
    item.commonKey = key;
    add(std::move(item), std::move(text));
    found_.back().isFallback = true;
}

bool ItemCollector::appendValue(std::size_t since, CommonKey key, const TagText& text) {
    for (Found& found : std::span(found_).subspan(since)) {
        if (found.item.commonKey != key || !found.item.text)
            continue;
        if (!found.rawBytes.isEmpty() || !text.rawBytes.isEmpty())
            return false;
        if (found.values++ < maxValues)
            found.item.text = joinedValues(*found.item.text + QChar(u'\0') + text.decoded);
        return true;
    }
    return false;
}

void ItemCollector::moveToEnd(std::size_t count) {
    std::rotate(found_.begin(), found_.begin() + static_cast<std::ptrdiff_t>(count), found_.end());
}

bool ItemCollector::has(CommonKey key) const {
    return std::ranges::any_of(found_, [key](const Found& found) {
        return found.item.commonKey == key && !found.isFallback &&
               (!found.rawBytes.isEmpty() || hasText(found.item));
    });
}

bool ItemCollector::hasAllCommonTexts() const {
    return has(CommonKey::Title) && has(CommonKey::Artist) && has(CommonKey::AlbumName);
}

void ItemCollector::decodeRawTexts() {
    std::vector<QByteArray> texts;
    for (const Found& found : found_) {
        if (found.item.commonKey && !found.rawBytes.isEmpty())
            texts.push_back(found.rawBytes);
    }
    const LegacyEncoding common = detectLegacyEncoding(texts);
    for (Found& found : found_) {
        if (found.rawBytes.isEmpty())
            continue;
        // Western words mix with any other language; two others rarely mix.
        const bool usesCommon = found.item.commonKey || (common != LegacyEncoding::Utf8 &&
                                                         common != LegacyEncoding::Windows1252);
        const LegacyEncoding encoding =
            usesCommon ? common : detectLegacyEncoding({found.rawBytes});
        found.item.text = joinedValues(decodeLegacyText(found.rawBytes, encoding));
    }
}

std::vector<MediaItem> ItemCollector::takeItems() {
    decodeRawTexts();
    std::vector<MediaItem> items;
    items.reserve(found_.size());
    for (Found& found : found_) {
        if (!found.isFallback)
            items.push_back(std::move(found.item));
    }
    const auto isMissing = [&items, count = items.size()](std::optional<CommonKey> key) {
        return std::none_of(
            items.begin(), items.begin() + static_cast<std::ptrdiff_t>(count),
            [key](const MediaItem& item) { return item.commonKey == key && hasText(item); });
    };
    for (Found& found : found_) {
        if (found.isFallback && isMissing(found.item.commonKey))
            items.push_back(std::move(found.item));
    }
    return items;
}

QHash<QString, QString> namedTexts(const std::vector<MediaItem>& items) {
    QHash<QString, QString> texts;
    const auto offer = [&texts](const QString& name, const QString& text) {
        if (!name.isEmpty() && !texts.contains(name))
            texts.insert(name, text);
    };
    for (const MediaItem& item : items) {
        if (!isNamed(item))
            continue;
        offer(item.name, *item.text);
        // QuickTime names occur with and without "©".
        if (item.name.startsWith(u'©'))
            offer(item.name.sliced(1), *item.text);
    }
    return texts;
}

} // namespace tamsy::media
