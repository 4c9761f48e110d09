#include "Tags/Mp4Tags.h"

#include <algorithm>
#include <array>

namespace tamsy::media {

namespace {

// "Well-known types" of a value, by the QuickTime File Format.
constexpr std::uint32_t untyped = 0;
constexpr std::uint32_t utf8Type = 1;
constexpr std::uint32_t utf16Type = 2;

constexpr std::uint32_t freeFormType = 0x2D2D2D2D; // "----"
constexpr std::uint32_t copyrightSign = 0xA9;

constexpr std::size_t maxKeys = 1024;
constexpr std::uint64_t longestName = 256;

std::string typeName(std::uint32_t type) {
    return {static_cast<char>(type >> 24U), static_cast<char>(type >> 16U & 0xFFU),
            static_cast<char>(type >> 8U & 0xFFU), static_cast<char>(type & 0xFFU)};
}

std::optional<CommonKey> commonKeyOfType(const std::string& name) {
    if (name == "\xA9"
                "nam")
        return CommonKey::Title;
    if (name == "\xA9"
                "ART")
        return CommonKey::Artist;
    if (name == "\xA9"
                "alb")
        return CommonKey::AlbumName;
    if (name == "covr")
        return CommonKey::Artwork;
    return std::nullopt;
}

std::optional<CommonKey> commonKeyOfKey(std::string_view key) {
    constexpr std::string_view prefix = "com.apple.quicktime.";
    if (key.starts_with(prefix))
        key.remove_prefix(prefix.size());
    if (key == "title")
        return CommonKey::Title;
    if (key == "artist")
        return CommonKey::Artist;
    if (key == "album")
        return CommonKey::AlbumName;
    if (key == "artwork")
        return CommonKey::Artwork;
    return std::nullopt;
}

} // namespace

void Mp4Tags::readUserData(const Mp4Atom& userData) {
    Mp4AtomWalk walk(parse_.window, atomsLeft_, userData.body, userData.end);
    while (const auto atom = walk.next()) {
        if (atom->is("meta"))
            readMeta(*atom);
        else if (atom->type >> 24U == copyrightSign)
            readUserText(*atom);
    }
}

void Mp4Tags::readMeta(const Mp4Atom& meta) {
    keys_.clear();
    namesKeys_ = false;
    // The atom starts with a version in ISO files, but not in QuickTime files.
    const bool isBare = parse_.window.matches(meta.body + 4, "hdlr");
    Mp4AtomWalk walk(parse_.window, atomsLeft_, meta.body + (isBare ? 0 : 4), meta.end);
    while (const auto atom = walk.next()) {
        if (atom->is("hdlr"))
            namesKeys_ = parse_.window.matches(atom->body + 8, "mdta");
        else if (atom->is("keys"))
            readKeys(*atom);
        else if (atom->is("ilst"))
            readList(*atom);
    }
}

void Mp4Tags::readKeys(const Mp4Atom& keys) {
    Mp4AtomWalk walk(parse_.window, atomsLeft_, keys.body + 8, keys.end);
    while (const auto key = walk.next()) {
        if (keys_.size() == maxKeys)
            break;
        const std::uint64_t length = std::min(key->size(), longestName);
        keys_.emplace_back(asText(parse_.window.read(key->body, length)));
    }
}

void Mp4Tags::readList(const Mp4Atom& list) {
    Mp4AtomWalk walk(parse_.window, atomsLeft_, list.body, list.end);
    for (int count = 0; count < maxEntries; ++count) {
        const auto entry = walk.next();
        if (!entry)
            break;
        readListItem(*entry);
    }
}

void Mp4Tags::readListItem(const Mp4Atom& entry) {
    const MediaItem known = itemFor(entry, {});
    if (!parse_.items.wants(known.commonKey))
        return;
    std::array<std::string, 2> freeName;
    std::vector<Value> values;
    Mp4AtomWalk walk(parse_.window, atomsLeft_, entry.body, entry.end);
    while (const auto atom = walk.next()) {
        if (atom->is("mean") || atom->is("name")) {
            const std::uint64_t length = std::min(atom->size(), longestName);
            const Bytes name = parse_.window.read(atom->body, length);
            if (name.size() > 4)
                freeName[atom->is("mean") ? 0 : 1] = asText(name.subspan(4));
        } else if (atom->is("data") && atom->size() >= 8) {
            const auto type = ByteCursor(parse_.window.read(atom->body, 4)).readU32();
            values.push_back({.type = type.value_or(untyped) & 0xFFFFFFU,
                              .offset = atom->body + 8,
                              .size = atom->size() - 8});
        }
    }
    const bool isFreeForm = entry.type == freeFormType && !namesKeys_;
    addValues(isFreeForm ? itemFor(entry, freeName[0] + "." + freeName[1]) : known, values);
}

MediaItem Mp4Tags::itemFor(const Mp4Atom& entry, const std::string& freeName) const {
    MediaItem item;
    item.format = namesKeys_ ? MetadataFormat::QuickTime : MetadataFormat::ITunes;
    if (namesKeys_) {
        if (entry.type == 0 || entry.type > keys_.size())
            return item;
        const std::string& key = keys_[entry.type - 1];
        item.commonKey = commonKeyOfKey(key);
        item.identifier = QLatin1String("mdta/") + QString::fromStdString(key);
    } else if (!freeName.empty()) {
        item.identifier = QLatin1String("itlk/") + QString::fromStdString(freeName);
    } else {
        const std::string name = typeName(entry.type);
        item.commonKey = commonKeyOfType(name);
        item.identifier = QLatin1String("itsk/") + QString::fromLatin1(name);
        if (entry.is("\xA9"
                     "lyr"))
            item.name = QStringLiteral("©lyr");
    }
    return item;
}

void Mp4Tags::addValues(const MediaItem& item, const std::vector<Value>& values) {
    // Each picture is an item; several texts are the values of one item.
    const bool isPicture = item.commonKey == CommonKey::Artwork;
    const std::size_t start = parse_.items.count();
    for (const Value& value : values) {
        const auto text = textOf(item, value);
        const bool isFirst = &value == &values.front();
        if (!isFirst && !isPicture &&
            (!text || !item.commonKey || parse_.items.appendValue(start, *item.commonKey, *text)))
            continue;
        MediaItem found = item;
        setReader(found, value.offset, value.size);
        if (text)
            parse_.items.add(std::move(found), *text);
        else
            parse_.items.add(std::move(found));
    }
}

std::optional<TagText> Mp4Tags::textOf(const MediaItem& item, const Value& value) {
    const bool mayBeText = value.type == utf8Type || value.type == utf16Type ||
                           (value.type == untyped && item.commonKey != CommonKey::Artwork &&
                            (item.commonKey || item.identifier.startsWith(u"itlk/") ||
                             item.identifier.startsWith(u"itsk/©")));
    if (!mayBeText || !parse_.items.wantsText(item.commonKey, value.size))
        return std::nullopt;
    const QByteArray bytes = parse_.window.copy(value.offset, value.size);
    if (value.type == utf16Type)
        return TagText{.decoded = decodeUtf16BigEndian(bytes), .rawBytes = {}};
    return utf8Text(bytes);
}

void Mp4Tags::readUserText(const Mp4Atom& atom) {
    const std::string name = typeName(atom.type);
    MediaItem item;
    item.commonKey = commonKeyOfType(name);
    if (!parse_.items.wants(item.commonKey))
        return;
    item.format = MetadataFormat::QuickTime;
    item.identifier = QLatin1String("udta/") + QString::fromLatin1(name);
    if (atom.is("\xA9"
                "lyr"))
        item.name = QStringLiteral("©lyr");
    // Each text follows its length and language.
    const auto length = ByteCursor(parse_.window.read(atom.body, 4)).readU16();
    if (!length || *length + 4U > atom.size())
        return;
    setReader(item, atom.body + 4, *length);
    if (!parse_.items.wantsText(item.commonKey, *length))
        return parse_.items.add(std::move(item));
    const QByteArray bytes = parse_.window.copy(atom.body + 4, *length);
    const bool isUtf16 = bytes.startsWith("\xFE\xFF") || bytes.startsWith("\xFF\xFE");
    parse_.items.add(std::move(item), isUtf16
                                          ? TagText{.decoded = decodeUtf16(bytes), .rawBytes = {}}
                                          : utf8Text(bytes));
}

void Mp4Tags::setReader(MediaItem& item, std::uint64_t offset, std::uint64_t size) const {
    if (parse_.items.listsEverything())
        item.readData = [source = parse_.source, offset, size] {
            return source->copy(offset, size);
        };
}

} // namespace tamsy::media
