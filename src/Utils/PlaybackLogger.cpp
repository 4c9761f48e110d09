#include "Utils/PlaybackLogger.h"

#include <QDateTime>
#include <QDir>
#include <QFile>

namespace tamsy {
namespace {

QString stateDirectory() {
    QString base = qEnvironmentVariable("XDG_STATE_HOME");
    if (base.isEmpty())
        base = QDir::homePath() + QLatin1String("/.local/state");
    return base + QLatin1String("/Tamsy Music");
}

} // namespace

void PlaybackLogger::log([[maybe_unused]] const QString& message) {
#ifdef TAMSY_PLAYBACK_LOG
    shared().write(message);
#endif
}

PlaybackLogger& PlaybackLogger::shared() {
    static PlaybackLogger logger;
    return logger;
}

PlaybackLogger::PlaybackLogger() {
    queue_.setMaxThreadCount(1);
    const QString directory = stateDirectory();
    QDir().mkpath(directory);
    fileURL_ = QFile::encodeName(directory + QLatin1String("/playback.log"));
}

QString PlaybackLogger::timestamp() {
    static const QString dateFormatter = QStringLiteral("yyyy-MM-dd HH:mm:ss.zzz");
    return QDateTime::currentDateTime().toString(dateFormatter);
}

void PlaybackLogger::write(const QString& message) {
    queue_.start(
        [this, line = QString(timestamp() + QLatin1Char(' ') + message + QLatin1Char('\n'))] {
            QFile file(QFile::decodeName(fileURL_));
            if (file.open(QIODevice::WriteOnly | QIODevice::Append))
                file.write(line.toUtf8());
        });
}

} // namespace tamsy
