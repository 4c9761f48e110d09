#include "Utils/LowercaseMatcher.h"

namespace tamsy {
namespace {

QString lowercasedNormalForm(const QString& text) {
    return text.toLower().normalized(QString::NormalizationForm_C);
}

bool isPlainCJK(char16_t unit) {
    // From the CJK radicals to the end of the unified ideographs, except the combining tone and
    // voicing marks, which compose with the character before them.
    const bool combines = (unit >= 0x302A && unit <= 0x302F) || unit == 0x3099 || unit == 0x309A;
    return unit >= 0x2E80 && unit <= 0x9FFF && !combines;
}

} // namespace

LowercaseMatcher::LowercaseMatcher(QStringView query)
    : query_(lowercasedNormalForm(query.toString())) {}

bool LowercaseMatcher::isContainedIn(const QString& text) {
    if (lowercasePlainText(text))
        return buffer_.contains(query_);
    return lowercasedNormalForm(text).contains(query_);
}

bool LowercaseMatcher::lowercasePlainText(QStringView text) {
    buffer_.resize(text.size());
    QChar* out = buffer_.data();
    for (const QChar c : text) {
        const char16_t unit = c.unicode();
        if (unit >= u'A' && unit <= u'Z')
            *out++ = QChar(unit + (u'a' - u'A'));
        else if (unit < 0x80 || isPlainCJK(unit))
            *out++ = c;
        else
            return false;
    }
    return true;
}

} // namespace tamsy
