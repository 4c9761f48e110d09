#include "Platform/Media/LegacyText.h"

#include <QStringDecoder>

#include <algorithm>
#include <iconv.h>
#include <memory>
#include <optional>

namespace tamsy::media {

namespace {

// Weights found by trial on titles of both kinds: frequent characters speak for Chinese, rare ones
// against it, bytes that Latin-1 has no letter for speak for it strongly, and a pair or two inside
// a word of Latin letters is almost always an accented letter with its neighbour.
constexpr int frequentCharacter = 2;
constexpr int rareCharacter = -1;
constexpr int controlByte = 3;
constexpr int insideLatinWord = -3;

std::optional<QString> decodeUtf8(QByteArrayView bytes) {
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    QString text = decoder(bytes);
    return decoder.hasError() ? std::nullopt : std::optional(std::move(text));
}

bool isLatinLetter(unsigned char byte) {
    return (byte >= 'A' && byte <= 'Z') || (byte >= 'a' && byte <= 'z');
}

bool isPair(unsigned char lead, unsigned char trail) {
    return lead >= 0x81 && lead <= 0xFE && trail >= 0x40 && trail <= 0xFE && trail != 0x7F;
}

int pairScore(unsigned char lead, unsigned char trail) {
    const bool frequent = lead >= 0xB0 && lead <= 0xD7 && trail >= 0xA1;
    const bool control = lead <= 0x9F || (trail >= 0x80 && trail <= 0x9F);
    return (frequent ? frequentCharacter : rareCharacter) + (control ? controlByte : 0);
}

// The fixed fields of old tags are 30 bytes long and cut a character in two.
bool isCutAtFieldEnd(qsizetype position, qsizetype size) {
    return position == size - 1 && (size == 29 || size == 30);
}

/// How much the text looks Chinese; nothing if some byte has no place in such a text.
std::optional<int> chineseScore(QByteArrayView bytes) {
    const auto at = [bytes](qsizetype i) { return static_cast<unsigned char>(bytes[i]); };
    int score = 0;
    qsizetype i = 0;
    while (i < bytes.size()) {
        if (at(i) < 0x80) {
            ++i;
            continue;
        }
        const qsizetype start = i;
        while (i + 1 < bytes.size() && isPair(at(i), at(i + 1))) {
            score += pairScore(at(i), at(i + 1));
            i += 2;
        }
        const bool touchesLatin = (start > 0 && isLatinLetter(at(start - 1))) ||
                                  (i < bytes.size() && isLatinLetter(at(i)));
        if (i - start <= 4 && touchesLatin)
            score += insideLatinWord;
        if (i < bytes.size() && at(i) >= 0x80) {
            if (!isCutAtFieldEnd(i, bytes.size()))
                return std::nullopt;
            ++i;
        }
    }
    return score;
}

QString decodeChinese(QByteArrayView bytes) {
    struct Close {
        void operator()(void* handle) const { iconv_close(handle); }
    };
    // Opening a converter costs more than a title's conversion.
    thread_local const std::unique_ptr<void, Close> converter(iconv_open("UTF-16LE", "GB18030"));
    if (converter.get() == reinterpret_cast<iconv_t>(-1))
        return QString::fromLatin1(bytes);
    iconv(converter.get(), nullptr, nullptr, nullptr, nullptr);
    QString text(bytes.size(), Qt::Uninitialized);
    char* in = const_cast<char*>(bytes.data());
    auto inLeft = static_cast<std::size_t>(bytes.size());
    char* out = reinterpret_cast<char*>(text.data());
    std::size_t outLeft = inLeft * sizeof(QChar);
    iconv(converter.get(), &in, &inLeft, &out, &outLeft);
    text.truncate(text.size() - static_cast<qsizetype>(outLeft / sizeof(QChar)));
    return text;
}

QString decodeWestern(QByteArrayView bytes) {
    constexpr char16_t windows[] = u"€\x81‚ƒ„…†‡ˆ‰Š‹Œ\x8DŽ\x8F\x90‘’“”•–—˜™š›œ\x9DžŸ";
    QString text = QString::fromLatin1(bytes);
    for (QChar& character : text) {
        if (character.unicode() >= 0x80 && character.unicode() <= 0x9F)
            character = windows[character.unicode() - 0x80];
    }
    return text;
}

} // namespace

LegacyEncoding judgeLegacyEncoding(const std::vector<QByteArray>& texts) {
    if (std::ranges::all_of(texts,
                            [](const QByteArray& text) { return decodeUtf8(text).has_value(); }))
        return LegacyEncoding::Utf8;
    int score = 0;
    for (const QByteArray& text : texts) {
        const auto part = chineseScore(text);
        if (!part)
            return LegacyEncoding::Western;
        score += *part;
    }
    return score > 0 ? LegacyEncoding::Chinese : LegacyEncoding::Western;
}

QString decodeLegacyText(QByteArrayView bytes, LegacyEncoding encoding) {
    if (encoding == LegacyEncoding::Chinese)
        return decodeChinese(bytes);
    const auto text = decodeUtf8(bytes);
    return text ? *text : decodeWestern(bytes);
}

} // namespace tamsy::media
