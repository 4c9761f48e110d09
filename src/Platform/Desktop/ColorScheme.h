#pragma once

#include <QDBusVariant>
#include <QObject>
#include <QString>

namespace tamsy {

/// Whether the desktop prefers dark windows, from its settings portal
/// (`org.freedesktop.appearance`, `color-scheme`; 1 means dark), kept up to date. Light if there is
/// no portal. Interface thread only.
class ColorScheme : public QObject {
    Q_OBJECT

  public:
    /// Queries the portal without waiting.
    explicit ColorScheme(QObject* parent = nullptr);

    [[nodiscard]] bool isDark() const { return isDark_; }

    /// Waits for the portal's first answer, for at most a tenth of a second, so that the first
    /// frame has the right colours.
    void waitForFirstAnswer();

  Q_SIGNALS:
    void isDarkChanged();

  private:
    Q_SLOT void settingChanged(const QString& group, const QString& key, const QDBusVariant& value);
    void apply(const QVariant& value);

    bool isDark_ = false;
};

} // namespace tamsy
