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
    /// Sets the scheme that the theme of `engine` follows; without one it is light. Call it before
    /// the first view is made. The scheme isn't owned and must outlive the engine.
    static void setColorScheme(QQmlEngine& engine, ColorScheme& scheme);

    static Appearance* create(QQmlEngine* engine, QJSEngine* scriptEngine);

    [[nodiscard]] bool dark() const;

  Q_SIGNALS:
    void darkChanged();

  private:
    explicit Appearance(const ColorScheme* scheme);

    const ColorScheme* const scheme_; // or null
};

} // namespace tamsy
