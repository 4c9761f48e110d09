#pragma once

#include <QString>
#include <QStringView>

namespace tamsy {

/// Case-insensitive substring search. Query and text are lower-cased and compared in NFC, so a
/// decomposed letter matches its composed form but never its base letter alone. Diacritics count.
/// Keeps a buffer, so an instance belongs to one thread.
class LowercaseMatcher {
  public:
    explicit LowercaseMatcher(QStringView query);

    [[nodiscard]] bool isContainedIn(const QString& text);

  private:
    /// Lower-cases into `buffer_`, which saves an allocation for each text, if every unit is ASCII
    /// or a CJK character with neither case nor another normal form; otherwise false.
    bool lowercasePlainText(QStringView text);

    QString query_;
    QString buffer_;
};

} // namespace tamsy
