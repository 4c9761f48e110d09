#pragma once

#include <QString>
#include <QStringView>

namespace tamsy {

/// Looks for a query in texts: a plain substring test after lower-casing both, in one normal form
/// (NFC), so that a decomposed letter is found like its composed twin and never as its bare letter.
/// Diacritics count. Keeps a buffer, so one matcher serves one thread.
class LowercaseMatcher {
  public:
    explicit LowercaseMatcher(QStringView query);

    [[nodiscard]] bool isContainedIn(const QString& text);

  private:
    /// Lower-cases into `buffer_`, which spares an allocation for each text, if every unit is ASCII
    /// or a CJK character that has neither case nor another normal form. False if one isn't.
    bool lowercasePlainText(QStringView text);

    QString query_;
    QString buffer_;
};

} // namespace tamsy
