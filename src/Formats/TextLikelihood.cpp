#include "Formats/TextLikelihood.h"

#include "Formats/TextConverter.h"

#include <algorithm>
#include <array>
#include <bitset>
#include <limits>
#include <string_view>

// The models assign each character a cost by its class: frequent, in the encoding's first level, or
// rare. The costs are rough logarithms of frequencies in running text; what matters is that all
// encodings, and ASCII, use the same scale.
namespace tamsy {
namespace {

using Byte = unsigned char;

constexpr double impossible = std::numeric_limits<double>::infinity();
constexpr double ascii = 4.5;
constexpr double rare = 18;

bool isBetween(Byte byte, Byte first, Byte last) {
    return byte >= first && byte <= last;
}

bool isAmong(Byte byte, std::string_view bytes) {
    return bytes.find(static_cast<char>(byte)) != std::string_view::npos;
}

// The most frequent characters in titles and names.
constexpr std::string_view frequentHanzi =
    "的我你爱愛不是了一在人心有这這风風天情梦夢来來月夜花雪时時光年想她他说說歌无無上大小雨海星中"
    "国國再见見笑泪淚生世界城市回家自由后後听聽张張林王陈陳周李黄黃刘劉罗羅齐齊蔡邓鄧惠学學友";
constexpr std::string_view frequentHangul = "이가다는의에을은고하지를로사기나어리아도해한인자라그대"
                                            "시수있정스만들보여주부전일게서원오모음너내말"
                                            "무안장우상비제과연화날미야구조성동소산물신경세남선영진"
                                            "유랑람생문노김알눈면꽃별바봄밤좋박최빛위간"
                                            "요네임길없와속같마거";

using Pairs = std::bitset<0x10000>;

unsigned pairOf(Byte lead, Byte trail) {
    return unsigned{lead} << 8U | trail;
}

/// The byte pairs of the characters of `text` in an encoding, without those that it lacks.
Pairs pairsOf(std::string_view text, const char* encoding) {
    Pairs pairs;
    for (std::size_t i = 0; i + 3 <= text.size(); i += 3) { // three bytes each in UTF-8
        const QByteArray pair = convertText(QByteArrayView(text.substr(i, 3)), "UTF-8", encoding);
        if (pair.size() == 2)
            pairs.set(pairOf(static_cast<Byte>(pair[0]), static_cast<Byte>(pair[1])));
    }
    return pairs;
}

struct Gb18030 {
    static bool isPair(Byte lead, Byte trail) {
        return isBetween(lead, 0x81, 0xFE) && isBetween(trail, 0x40, 0xFE) && trail != 0x7F;
    }
    static double single(Byte /*byte*/) { return impossible; }
    static double pair(Byte lead, Byte trail) {
        static const Pairs frequent = pairsOf(frequentHanzi, "GBK");
        if (frequent.test(pairOf(lead, trail)))
            return 8.5;
        if (trail < 0xA1 || lead < 0xA1 || lead > 0xF7)
            return rare;
        return lead <= 0xA9 ? 13 : lead >= 0xB0 && lead <= 0xD7 ? 12.2 : lead < 0xB0 ? rare : 16;
    }
};

struct Big5 {
    static bool isPair(Byte lead, Byte trail) {
        return isBetween(lead, 0xA1, 0xF9) &&
               (isBetween(trail, 0x40, 0x7E) || isBetween(trail, 0xA1, 0xFE));
    }
    static double single(Byte /*byte*/) { return impossible; }
    static double pair(Byte lead, Byte trail) {
        static const Pairs frequent = pairsOf(frequentHanzi, "BIG5");
        if (frequent.test(pairOf(lead, trail)))
            return 8.5;
        return lead <= 0xA3 ? 14 : lead <= 0xC6 ? 12.6 : rare;
    }
};

struct EucKr {
    static bool isPair(Byte lead, Byte trail) {
        return isBetween(lead, 0xA1, 0xFD) && lead != 0xC9 && isBetween(trail, 0xA1, 0xFE);
    }
    static double single(Byte /*byte*/) { return impossible; }
    static double pair(Byte lead, Byte trail) {
        static const Pairs frequent = pairsOf(frequentHangul, "EUC-KR");
        if (frequent.test(pairOf(lead, trail)))
            return 8;
        return lead <= 0xAC ? 14.5 : lead >= 0xB0 && lead <= 0xC8 ? 12.5 : rare;
    }
};

struct ShiftJis {
    static bool isPair(Byte lead, Byte trail) {
        return (isBetween(lead, 0x81, 0x9F) || isBetween(lead, 0xE0, 0xFC)) &&
               isBetween(trail, 0x40, 0xFC) && trail != 0x7F;
    }
    /// Half-width katakana.
    static double single(Byte byte) { return isBetween(byte, 0xA1, 0xDF) ? 13 : impossible; }
    static bool isKana(Byte lead, Byte trail) {
        return (lead == 0x82 && isBetween(trail, 0x9F, 0xF1)) ||
               (lead == 0x83 && isBetween(trail, 0x40, 0x96));
    }
    static double pair(Byte lead, Byte trail) {
        if (isKana(lead, trail))
            return lead == 0x82 ? 7.5 : 8;
        if (lead == 0x81) // long vowel mark, middle dot and punctuation
            return trail == 0x5B || isBetween(trail, 0x40, 0x45) ? 8 : trail < 0xAC ? 12 : rare;
        return lead == 0x82 ? 13 : isBetween(lead, 0x88, 0x97) ? 12.6 : rare;
    }
};

// The fixed fields of old tags have 30 bytes and may cut a character in two; so may our own limit.
bool isCutAtEnd(qsizetype position, qsizetype size) {
    return position == size - 1 && (size == 29 || size == 30 || size == examinedBytes);
}

template <typename Encoding>
double costOfPairs(QByteArrayView bytes) {
    const auto at = [bytes](qsizetype i) { return static_cast<Byte>(bytes[i]); };
    double cost = 0;
    for (qsizetype i = 0; i < bytes.size(); ++i) {
        if (at(i) < 0x80) {
            cost += ascii;
        } else if (const double single = Encoding::single(at(i)); single < impossible) {
            cost += single;
        } else if (i + 1 < bytes.size() && Encoding::isPair(at(i), at(i + 1))) {
            cost += Encoding::pair(at(i), at(i + 1));
            ++i;
        } else if (!isCutAtEnd(i, bytes.size())) {
            return impossible;
        }
    }
    return cost;
}

bool isAsciiLetter(Byte byte) {
    return isBetween(byte, 'A', 'Z') || isBetween(byte, 'a', 'z');
}

/// Costs of а to я, in bits.
constexpr std::array<double, 32> cyrillicLetters = {
    3.6, 6.0, 4.5, 5.9, 5.1, 3.5, 6.8, 6.0, 3.8, 6.4, 4.8, 4.5, 5.0, 3.9, 3.2, 5.2,
    4.4, 4.2, 4.0, 5.3, 8.3, 6.6, 7.7, 6.2, 7.2, 8.3, 11., 5.7, 5.9, 8.0, 7.4, 5.6};

double cyrillicLetter(Byte byte) {
    if (byte >= 0xC0)
        return cyrillicLetters[byte & 0x1FU];
    // Ukrainian letters and ё.
    return isAmong(byte, "\xA8\xB8\xB2\xB3\xAF\xBF\xAA\xBA\xA5\xB4") ? 9 : impossible;
}

bool isCyrillicCapital(Byte byte) {
    return isBetween(byte, 0xC0, 0xDF) || isAmong(byte, "\xA8\xB2\xAF\xAA\xA5");
}

/// Penalises capitals inside words, and Cyrillic letters next to Latin ones.
double costOfCyrillic(QByteArrayView bytes) {
    constexpr double expectedCapital = 1.5;
    constexpr double capitalInsideWord = 5;
    constexpr double mixedAlphabets = 6;
    enum class Former { NoLetter, Latin, Capital, Small } former = Former::NoLetter;
    double cost = 0;
    for (const char character : bytes) {
        const auto byte = static_cast<Byte>(character);
        if (byte < 0x80) {
            const bool isMixed =
                isAsciiLetter(byte) && (former == Former::Capital || former == Former::Small);
            cost += ascii + (isMixed ? mixedAlphabets : 0);
            former = isAsciiLetter(byte) ? Former::Latin : Former::NoLetter;
            continue;
        }
        const double letter = cyrillicLetter(byte);
        if (letter == impossible) {
            const bool isPunctuation = isBetween(byte, 0x91, 0x97) || byte == 0xAB || byte == 0xBB;
            cost += isPunctuation || byte == 0xB9 ? 8 : 13; // 0xB9 is the number sign
            former = Former::NoLetter;
            continue;
        }
        const bool isCapital = isCyrillicCapital(byte);
        cost += letter + (former == Former::Latin ? mixedAlphabets : 0);
        if (isCapital)
            cost += former == Former::Small || former == Former::Latin ? capitalInsideWord
                                                                       : expectedCapital;
        former = isCapital ? Former::Capital : Former::Small;
    }
    return cost;
}

double westernByte(Byte byte) {
    struct Letters {
        std::string_view bytes;
        double cost;
    };
    constexpr Letters letters[] = {
        {"\xE9", 4.5},                                     // é
        {"\xE4\xF6\xFC", 5.5},                             // ä ö ü
        {"\xE1\xED\xF3\xF1\xE3", 6},                       // á í ó ñ ã
        {"\xE8\xE0\xE7\xDF\xE5\xF8", 6.5},                 // è à ç ß å ø
        {"\xEA\xFA\xE6\x92", 7},                           // ê ú æ ’
        {"\xF4\xD6\xC4\xDC", 7.5},                         // ô Ö Ä Ü
        {"\x81\x8D\x8F\x90\x9D", 25},                      // unassigned
        {"\xD7\xF7", 14},                                  // × ÷
        {"\x93\x94\x96\x97\x85\x91", 8},                   // “ ” – — … ‘
        {"\xB4\xB0\xA1\xBF\xAB\xBB\x9C\xB7", 9},           // ´ ° ¡ ¿ « » œ ·
        {"\xAE\xA9\x8C\x9A\x8A\x9E\x8E\x99\xB2\xB3", 10}}; // ® © Œ š Š ž Ž ™ ² ³
    for (const auto& [bytes, cost] : letters) {
        if (isAmong(byte, bytes))
            return cost;
    }
    return byte >= 0xC0 ? 8 : 13;
}

/// Penalises adjacent accented letters, which are rare.
double costOfWestern(QByteArrayView bytes) {
    constexpr double besideAnother = 3;
    double cost = 0;
    bool isFormerHigh = false;
    for (const char character : bytes) {
        const auto byte = static_cast<Byte>(character);
        cost += byte < 0x80 ? ascii : westernByte(byte) + (isFormerHigh ? besideAnother : 0);
        isFormerHigh = byte >= 0xC0;
    }
    return cost;
}

} // namespace

double costOfText(QByteArrayView text, LegacyEncoding encoding) {
    const QByteArrayView bytes = text.first(std::min(text.size(), examinedBytes));
    switch (encoding) {
    case LegacyEncoding::Gb18030:
        return costOfPairs<Gb18030>(bytes);
    case LegacyEncoding::ShiftJis:
        return costOfPairs<ShiftJis>(bytes);
    case LegacyEncoding::Big5:
        return costOfPairs<Big5>(bytes);
    case LegacyEncoding::EucKr:
        return costOfPairs<EucKr>(bytes);
    case LegacyEncoding::Windows1251:
        return costOfCyrillic(bytes);
    case LegacyEncoding::Windows1252:
        return costOfWestern(bytes);
    case LegacyEncoding::Utf8:
        break;
    }
    return impossible;
}

bool hasKana(QByteArrayView text) {
    const auto at = [text](qsizetype i) { return static_cast<Byte>(text[i]); };
    for (qsizetype i = 0; i + 1 < text.size(); ++i) {
        if (ShiftJis::isPair(at(i), at(i + 1)) && ShiftJis::isKana(at(i), at(i + 1)))
            return true;
        i += ShiftJis::isPair(at(i), at(i + 1)) ? 1 : 0;
    }
    return false;
}

} // namespace tamsy
