#pragma once

#include <QObject>
#include <QString>
#include <QtQml/qqmlregistration.h>

namespace tamsy {

/// The Now Playing window's log on standard output, for diagnosis only.
class NowPlayingLog : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON

  public:
    using QObject::QObject;

    Q_INVOKABLE void log(const QString& message) const { write(message); }

    static void write(const QString& message);
};

} // namespace tamsy
