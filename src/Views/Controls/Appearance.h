#pragma once

#include "Platform/Desktop/ColorScheme.h"

#include <QObject>
#include <QtQml/qqmlregistration.h>

class QJSEngine;
class QQmlEngine;

namespace tamsy {

/// Whether the desktop prefers dark, for the theme.
class Appearance : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(bool dark READ dark NOTIFY darkChanged)

  public:
    /// Gives the theme the scheme that it follows. Not owned; it outlives every view. Called once,
    /// before the first view is made.
    static void setColorScheme(ColorScheme* scheme);

    static Appearance* create(QQmlEngine* engine, QJSEngine* scriptEngine);

    [[nodiscard]] bool dark() const;

  Q_SIGNALS:
    void darkChanged();

  private:
    Appearance();
};

} // namespace tamsy
