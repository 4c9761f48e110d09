#include "Tags/Id3v2Frame.h"

#include "Formats/Id3Terminator.h"
#include "Formats/Inflate.h"
#include "Formats/Unsynchronisation.h"
#include "Tags/Id3Lyrics.h"

#include <algorithm>
#include <array>
#include <utility>

namespace tamsy::media {

namespace {

// A compressed frame can expand a thousandfold. No compressed cover is larger than this.
constexpr qsizetype longestPackedData = qsizetype{4} * 1024 * 1024;

constexpr std::pair<std::string_view, std::string_view> renamedFrames[] = {
    {"BUF", "RBUF"}, {"CNT", "PCNT"}, {"COM", "COMM"}, {"CRA", "AENC"}, {"ETC", "ETCO"},
    {"GEO", "GEOB"}, {"IPL", "IPLS"}, {"MCI", "MCDI"}, {"MLL", "MLLT"}, {"PIC", "APIC"},
    {"POP", "POPM"}, {"REV", "RVRB"}, {"SLT", "SYLT"}, {"STC", "SYTC"}, {"TAL", "TALB"},
    {"TBP", "TBPM"}, {"TCM", "TCOM"}, {"TCO", "TCON"}, {"TCP", "TCMP"}, {"TCR", "TCOP"},
    {"TDA", "TDAT"}, {"TDY", "TDLY"}, {"TEN", "TENC"}, {"TFT", "TFLT"}, {"TIM", "TIME"},
    {"TKE", "TKEY"}, {"TLA", "TLAN"}, {"TLE", "TLEN"}, {"TMT", "TMED"}, {"TOA", "TOPE"},
    {"TOF", "TOFN"}, {"TOL", "TOLY"}, {"TOR", "TORY"}, {"TOT", "TOAL"}, {"TP1", "TPE1"},
    {"TP2", "TPE2"}, {"TP3", "TPE3"}, {"TP4", "TPE4"}, {"TPA", "TPOS"}, {"TPB", "TPUB"},
    {"TRC", "TSRC"}, {"TRD", "TRDA"}, {"TRK", "TRCK"}, {"TSI", "TSIZ"}, {"TSS", "TSSE"},
    {"TT1", "TIT1"}, {"TT2", "TIT2"}, {"TT3", "TIT3"}, {"TXT", "TEXT"}, {"TXX", "TXXX"},
    {"TYE", "TYER"}, {"UFI", "UFID"}, {"ULT", "USLT"}, {"WAF", "WOAF"}, {"WAR", "WOAR"},
    {"WAS", "WOAS"}, {"WCM", "WCOM"}, {"WCP", "WCOP"}, {"WPB", "WPUB"}, {"WXX", "WXXX"},
};

std::optional<CommonKey> commonKeyOf(std::string_view name) {
    if (name == "TIT2")
        return CommonKey::Title;
    if (name == "TPE1")
        return CommonKey::Artist;
    if (name == "TALB")
        return CommonKey::AlbumName;
    if (name == "APIC" || name == "PIC")
        return CommonKey::Artwork;
    return std::nullopt;
}

/// The frame's payload from its bytes in the tag, without unsynchronisation, group and length
/// bytes, decompressed up to `limit` bytes.
QByteArray payloadOf(const Id3Frame& frame, QByteArray bytes, qsizetype limit) {
    if (frame.isEncrypted)
        return {};
    if (frame.isUnsynchronised)
        bytes = undoUnsynchronisation(bytes);
    // The length precedes the group byte in 2.3 and follows it in 2.4; both are skipped.
    const qsizetype extra = (frame.isGrouped ? 1 : 0) + (frame.hasLength ? 4 : 0);
    if (extra > 0)
        bytes.remove(0, std::min(extra, bytes.size()));
    return frame.isCompressed ? inflated(bytes, limit) : bytes;
}

/// The text up to its first terminator, and the rest.
std::pair<QByteArrayView, QByteArrayView> splitAtTerminator(QByteArrayView bytes, char encoding) {
    const qsizetype unit = id3UnitSize(encoding);
    const qsizetype end = findId3Terminator(bytes, unit);
    return end < 0 ? std::pair(bytes, QByteArrayView())
                   : std::pair(bytes.first(end), bytes.sliced(end + unit));
}

TagText decode(QByteArrayView bytes, char encoding) {
    switch (encoding) {
    case 0:
        return legacyText(bytes);
    case 1:
        return {.decoded = decodeUtf16(bytes), .rawBytes = {}};
    case 2:
        return {.decoded = decodeUtf16BigEndian(bytes), .rawBytes = {}};
    default:
        return utf8Text(bytes);
    }
}

/// The encoded picture, which follows encoding, format, type and description. The format is three
/// letters in version 2.2 and a terminated text in later ones.
QByteArray pictureOf(QByteArrayView payload, bool isVersion22) {
    if (payload.size() < 5)
        return {};
    // Some programs mix the name of one version with the body of the other.
    const bool isFormatTerminated = !isVersion22 || payload.sliced(1).startsWith("image/");
    const QByteArrayView afterFormat =
        !isFormatTerminated ? payload.sliced(4) : splitAtTerminator(payload.sliced(1), 0).second;
    if (afterFormat.isEmpty())
        return {};
    return splitAtTerminator(afterFormat.sliced(1), payload.front()).second.toByteArray();
}

std::function<QByteArray()> dataReader(const Id3Frame& frame, const SharedSource& source,
                                       bool isPicture) {
    return [source, frame, isPicture] {
        const QByteArray payload =
            payloadOf(frame, source->copy(frame.offset, frame.size), longestPackedData);
        if (frame.isCompressed && payload.size() == longestPackedData)
            return QByteArray();
        return isPicture ? pictureOf(payload, frame.isVersion22) : payload;
    };
}

void addDecoded(ItemCollector& items, MediaItem item, TagText text) {
    // The bytes of an empty text, its encoding and language, would be taken for text.
    if (text.rawBytes.isEmpty() && joinedValues(text.decoded).isEmpty())
        item.readData = nullptr;
    items.add(std::move(item), std::move(text));
}

void addText(ItemCollector& items, MediaItem item, const Id3Frame& frame, QByteArrayView payload) {
    if (payload.isEmpty())
        return items.add(std::move(item));
    const char encoding = payload.front();
    const QByteArrayView body = payload.sliced(1);
    if (frame.name == "TXXX") {
        const auto [description, value] = splitAtTerminator(body, encoding);
        item.name = decode(description, encoding).decoded;
        return addDecoded(items, std::move(item), decode(value, encoding));
    }
    if (frame.name.front() == 'T')
        return addDecoded(items, std::move(item), decode(body, encoding));
    if (frame.name == "SYLT") {
        const QString lyrics = synchronisedLyricsText(payload).value_or(QString());
        return addDecoded(items, std::move(item), {.decoded = lyrics, .rawBytes = {}});
    }
    const QByteArrayView described = body.sliced(std::min<qsizetype>(3, body.size()));
    addDecoded(items, std::move(item),
               decode(splitAtTerminator(described, encoding).second, encoding));
}

bool isText(std::string_view name) {
    return name.front() == 'T' || name == "USLT" || name == "COMM" || name == "SYLT";
}

/// The payload of a text frame; nothing if it isn't one or is longer than wanted. A compressed one
/// that reaches the limit counts as longer.
std::optional<QByteArray> textPayload(ItemCollector& items, const Id3Frame& frame,
                                      std::optional<CommonKey> key, ByteWindow& window) {
    if (!isText(frame.name) || !items.wantsText(key, frame.size))
        return std::nullopt;
    const QByteArray bytes = window.copy(frame.offset, frame.size);
    if (!frame.isCompressed)
        return payloadOf(frame, bytes, 0);
    const auto maxSize = static_cast<qsizetype>(items.maxTextSize(key));
    QByteArray payload = payloadOf(frame, bytes, maxSize);
    const bool isWhole = payload.size() < maxSize;
    return items.wantsText(key, static_cast<std::uint64_t>(payload.size())) && isWhole
               ? std::optional(std::move(payload))
               : std::nullopt;
}

/// Whether the frame's bytes are available on request. Not those of a compressed text, which is
/// decoded already.
bool keepsData(ItemCollector& items, const Id3Frame& frame) {
    return !frame.isCompressed || (frame.name.front() != 'T' && items.wantsPackedData());
}

} // namespace

bool isFrameName(std::string_view name) {
    return std::ranges::all_of(name, [](char letter) {
        return (letter >= 'A' && letter <= 'Z') || (letter >= '0' && letter <= '9');
    });
}

std::string fourLetterName(std::string_view name) {
    const auto* found = std::ranges::lower_bound(renamedFrames, name, {},
                                                 [](const auto& pair) { return pair.first; });
    const bool isRenamed = found != std::end(renamedFrames) && found->first == name;
    return std::string(isRenamed ? found->second : name);
}

void readFrame(ItemCollector& items, const Id3Frame& frame, const SharedSource& source,
               ByteWindow& window) {
    MediaItem item;
    item.commonKey = commonKeyOf(frame.name);
    if (!items.wants(item.commonKey))
        return;
    item.format = MetadataFormat::ID3;
    item.identifier = QLatin1String("id3/") + QLatin1String(frame.name.c_str());
    if (items.listsEverything() && keepsData(items, frame))
        item.readData = dataReader(frame, source, item.commonKey == CommonKey::Artwork);
    const auto payload = textPayload(items, frame, item.commonKey, window);
    if (payload)
        addText(items, std::move(item), frame, *payload);
    else
        items.add(std::move(item));
}

} // namespace tamsy::media
