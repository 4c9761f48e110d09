#include "Services/Lyrics/LyricsDecoding.h"

#include "Formats/Utf8.h"

#include <QStringConverter>

namespace tamsy {
namespace {

// Qt's UTF-16 decoders let lone surrogates through and replace an odd byte at the end.
std::optional<QString> decodeUnits(QByteArrayView bytes, QStringConverter::Encoding encoding) {
    if (bytes.size() % 2 != 0)
        return std::nullopt;
    QStringDecoder decoder(encoding, QStringConverter::Flag::Stateless);
    QString text = decoder.decode(bytes);
    return text.isValidUtf16() ? std::optional(std::move(text)) : std::nullopt;
}

std::optional<QString> decodeLatin1(QByteArrayView bytes) {
    return QString::fromLatin1(bytes);
}

} // namespace

std::optional<QString> decodeUTF8(QByteArrayView bytes) {
    return decodeStrictUtf8(bytes);
}

std::optional<QString> decodeUTF16(QByteArrayView bytes) {
    return decodeUnits(bytes, QStringConverter::Utf16);
}

std::optional<QString> decodeUTF16LittleEndian(QByteArrayView bytes) {
    return decodeUnits(bytes, QStringConverter::Utf16LE);
}

std::optional<QString> decodeUTF16BigEndian(QByteArrayView bytes) {
    return decodeUnits(bytes, QStringConverter::Utf16BE);
}

std::optional<QString> decodeBestEffort(QByteArrayView bytes) {
    for (const auto decode :
         {decodeUTF8, decodeUTF16, decodeUTF16LittleEndian, decodeUTF16BigEndian, decodeLatin1}) {
        if (auto text = decode(bytes); text && !text->isEmpty())
            return text;
    }
    return std::nullopt;
}

} // namespace tamsy
