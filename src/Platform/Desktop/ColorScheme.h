#pragma once

#include <QDBusVariant>
#include <QObject>
#include <QString>

namespace tamsy {

/// Whether the desktop prefers dark windows, asked of its settings portal
/// (`org.freedesktop.appearance`, `color-scheme`; 1 stands for dark) and followed while the program
/// runs. Without a portal it is light. Interface thread only.
class ColorScheme : public QObject {
    Q_OBJECT

  public:
    /// Asks at once and doesn't wait.
    explicit ColorScheme(QObject* parent = nullptr);

    [[nodiscard]] bool isDark() const { return isDark_; }

    /// Waits for the portal's first answer, but no longer than a tenth of a second, so that the
    /// first frame has the right colours wherever a portal is running.
    void waitForFirstAnswer();

  Q_SIGNALS:
    void isDarkChanged();

  private:
    Q_SLOT void settingChanged(const QString& group, const QString& key, const QDBusVariant& value);
    void apply(const QVariant& value);

    bool isDark_ = false;
};

} // namespace tamsy
