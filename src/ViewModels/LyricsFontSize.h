#pragma once

#include "Platform/Storage/UserDefaults.h"

#include <QObject>

namespace tamsy {

/// The stored size of the lyrics font, in points, as the menu changes it and the lyrics follow it.
/// A stored value outside the limits stays in force until it is changed here. Interface thread
/// only.
class LyricsFontSize : public QObject {
    Q_OBJECT
    Q_PROPERTY(double points READ points NOTIFY pointsChanged)

  public:
    /// The store isn't owned and outlives this object.
    explicit LyricsFontSize(UserDefaults& defaults, QObject* parent = nullptr);

    [[nodiscard]] double points() const;

    Q_INVOKABLE void increase();
    Q_INVOKABLE void decrease();
    Q_INVOKABLE void reset();

  Q_SIGNALS:
    void pointsChanged();

  private:
    void store(double points);

    UserDefaults& defaults_;
    double lyricsFontSizePoints_;
};

} // namespace tamsy
