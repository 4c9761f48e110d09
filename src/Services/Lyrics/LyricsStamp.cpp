#include "Services/Lyrics/LyricsStamp.h"

#include <QChar>

namespace tamsy {
namespace {

/// Reads a stamp part by part, consuming the text as it goes.
class StampScanner {
  public:
    explicit StampScanner(QStringView text) : text_(text) {}

    [[nodiscard]] QStringView rest() const { return text_; }

    bool skip(QChar character) {
        if (!text_.startsWith(character))
            return false;
        text_ = text_.sliced(1);
        return true;
    }

    /// Reads as many decimal digits as there are, up to `max`; nothing if fewer than `min`.
    std::optional<QStringView> digits(int min, int max) {
        qsizetype length = 0;
        int count = 0;
        for (; count < max; ++count) {
            const qsizetype width = digitWidth(text_.sliced(length));
            if (width == 0)
                break;
            length += width;
        }
        if (count < min)
            return std::nullopt;
        const QStringView found = text_.first(length);
        text_ = text_.sliced(length);
        return found;
    }

  private:
    /// The size of the decimal digit at the start of `text` in UTF-16 units; 0 if there is none.
    static qsizetype digitWidth(QStringView text) {
        if (text.isEmpty())
            return 0;
        if (!text.front().isHighSurrogate())
            return text.front().category() == QChar::Number_DecimalDigit ? 1 : 0;
        if (text.size() < 2 || !text[1].isLowSurrogate())
            return 0;
        const char32_t character = QChar::surrogateToUcs4(text[0], text[1]);
        return QChar::category(character) == QChar::Number_DecimalDigit ? 2 : 0;
    }

    QStringView text_;
};

/// The stamp at the start of `text`.
std::optional<LyricsStamp> readStamp(QStringView text) {
    StampScanner scanner(text);
    if (!scanner.skip(u'['))
        return std::nullopt;
    const auto minutes = scanner.digits(1, 2);
    if (!minutes || !scanner.skip(u':'))
        return std::nullopt;
    const auto seconds = scanner.digits(2, 2);
    if (!seconds)
        return std::nullopt;
    std::optional<QStringView> fraction;
    if (scanner.skip(u'.')) {
        fraction = scanner.digits(2, 3);
        if (!fraction)
            return std::nullopt;
    }
    if (!scanner.skip(u']'))
        return std::nullopt;
    return LyricsStamp{*minutes, *seconds, fraction, scanner.rest()};
}

std::optional<int> asciiNumber(QStringView digits) {
    int value = 0;
    for (const QChar digit : digits) {
        if (digit < u'0' || digit > u'9')
            return std::nullopt;
        value = value * 10 + (digit.unicode() - u'0');
    }
    return value;
}

int millisecondsOf(QStringView fraction) {
    const int multiplier = fraction.size() == 2 ? 10 : 1;
    return asciiNumber(fraction).value_or(0) * multiplier;
}

} // namespace

std::optional<LyricsStamp> findStamp(QStringView text) {
    for (qsizetype at = text.indexOf(u'['); at >= 0; at = text.indexOf(u'[', at + 1)) {
        if (const auto stamp = readStamp(text.sliced(at)))
            return stamp;
    }
    return std::nullopt;
}

std::optional<double> secondsOf(const LyricsStamp& stamp) {
    const auto minutes = asciiNumber(stamp.minutes);
    const auto seconds = asciiNumber(stamp.seconds);
    if (!minutes || !seconds)
        return std::nullopt;
    const int milliseconds = stamp.fraction ? millisecondsOf(*stamp.fraction) : 0;
    return *minutes * 60 + *seconds + milliseconds / 1000.0;
}

} // namespace tamsy
