#include "Formats/LegacyText.h"

#include "Formats/TextConverter.h"
#include "Formats/TextLikelihood.h"
#include "Formats/Utf8.h"

#include <QStringDecoder>

#include <algorithm>
#include <limits>
#include <optional>

namespace tamsy {
namespace {

struct Candidate {
    LegacyEncoding encoding;
    const char* name; ///< the C library's
    double prior;     ///< handicap in bits: most users are Chinese
};

constexpr Candidate candidates[] = {
    {LegacyEncoding::Gb18030, "GB18030", 0}, {LegacyEncoding::Windows1252, "CP1252", 0},
    {LegacyEncoding::ShiftJis, "CP932", 1},  {LegacyEncoding::Big5, "BIG5-HKSCS", 2},
    {LegacyEncoding::EucKr, "CP949", 4},     {LegacyEncoding::Windows1251, "CP1251", 6},
};

constexpr double withoutKana = 8; // bits

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

LegacyEncoding detectLegacyEncoding(const std::vector<QByteArray>& texts) {
    if (std::ranges::all_of(
            texts, [](const QByteArray& text) { return decodeStrictUtf8(text).has_value(); }))
        return LegacyEncoding::Utf8;
    auto likeliest = LegacyEncoding::Windows1252;
    double lowest = std::numeric_limits<double>::infinity();
    for (const Candidate& candidate : candidates) {
        double cost = candidate.prior;
        if (candidate.encoding == LegacyEncoding::ShiftJis && std::ranges::none_of(texts, hasKana))
            cost += withoutKana;
        for (const QByteArray& text : texts)
            cost += costOfText(text, candidate.encoding);
        if (cost < lowest) {
            lowest = cost;
            likeliest = candidate.encoding;
        }
    }
    return likeliest;
}

QString decodeLegacyText(QByteArrayView bytes, LegacyEncoding encoding) {
    const bool isOfSingleBytes = encoding == LegacyEncoding::Utf8 ||
                                 encoding == LegacyEncoding::Windows1252 ||
                                 encoding == LegacyEncoding::Windows1251;
    const auto utf8 = isOfSingleBytes ? decodeStrictUtf8(bytes) : std::nullopt;
    if (utf8)
        return *utf8;
    if (encoding == LegacyEncoding::Utf8 || encoding == LegacyEncoding::Windows1252)
        return decodeWestern(bytes);
    const auto* candidate = std::ranges::find(candidates, encoding, &Candidate::encoding);
    const QByteArray converted = convertText(bytes, candidate->name, "UTF-16LE");
    return QString(reinterpret_cast<const QChar*>(converted.constData()),
                   converted.size() / qsizetype{sizeof(QChar)});
}

} // namespace tamsy
