#pragma once

#include "Platform/Storage/UserDefaults.h"

#include <QObject>

namespace tamsy {

/// The stored size of the lyrics font, in points. The menu changes it and the lyrics follow. A
/// stored value outside the limits is used until it is changed here. Interface thread only.
class LyricsFontSize : public QObject {
    Q_OBJECT
    Q_PROPERTY(double points READ points NOTIFY pointsChanged)

  public:
    /// `defaults` must outlive this object.
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
