#include "Tags/TagText.h"

#include "Formats/Utf8.h"

#include <QStringDecoder>

#include <algorithm>

namespace tamsy::media {

namespace {

constexpr char16_t byteOrderMark = 0xFEFF;

QString decodeInOrder(QByteArrayView bytes, QStringDecoder::Encoding order) {
    QStringDecoder decoder(order, QStringDecoder::Flag::ConvertInitialBom |
                                      QStringDecoder::Flag::Stateless);
    QString text = decoder(bytes.first(bytes.size() - bytes.size() % 2));
    return text.remove(QChar(byteOrderMark));
}

bool isLikelyHighByte(unsigned char high, unsigned char low) {
    return (high == 0 && low >= 0x20) || high == 0x30 || high == 0xFF ||
           (high >= 0x4E && high <= 0x9F);
}

QStringDecoder::Encoding likelyOrder(QByteArrayView bytes) {
    int balance = 0;
    for (qsizetype i = 0; i + 1 < bytes.size(); i += 2) {
        const auto first = static_cast<unsigned char>(bytes[i]);
        const auto second = static_cast<unsigned char>(bytes[i + 1]);
        balance += isLikelyHighByte(first, second) ? 1 : 0;
        balance -= isLikelyHighByte(second, first) ? 1 : 0;
    }
    return balance > 0 ? QStringDecoder::Utf16BE : QStringDecoder::Utf16LE;
}

} // namespace

TagText utf8Text(QByteArrayView bytes) {
    auto text = decodeStrictUtf8(bytes);
    if (!text)
        return {.decoded = {}, .rawBytes = bytes.toByteArray()};
    return {.decoded = std::move(*text), .rawBytes = {}};
}

TagText legacyText(QByteArrayView bytes) {
    const bool isAscii =
        std::ranges::all_of(bytes, [](char byte) { return static_cast<signed char>(byte) >= 0; });
    if (isAscii)
        return {.decoded = QString::fromLatin1(bytes), .rawBytes = {}};
    return {.decoded = {}, .rawBytes = bytes.toByteArray()};
}

QString decodeUtf16(QByteArrayView bytes) {
    if (bytes.startsWith("\xFF\xFE"))
        return decodeInOrder(bytes, QStringDecoder::Utf16LE);
    if (bytes.startsWith("\xFE\xFF"))
        return decodeInOrder(bytes, QStringDecoder::Utf16BE);
    return decodeInOrder(bytes, likelyOrder(bytes));
}

QString decodeUtf16BigEndian(QByteArrayView bytes) {
    const bool isMarked = bytes.startsWith("\xFF\xFE");
    return decodeInOrder(bytes, isMarked ? QStringDecoder::Utf16LE : QStringDecoder::Utf16BE);
}

QString joinedValues(const QString& text) {
    if (!text.contains(QChar(u'\0')))
        return text;
    QString joined;
    for (const QStringView value : QStringView(text).tokenize(u'\0', Qt::SkipEmptyParts)) {
        if (!joined.isEmpty())
            joined += QStringLiteral("; ");
        joined += value;
    }
    return joined;
}

} // namespace tamsy::media
