#include "Utils/PlaybackLogger.h"

#include "Utils/BaseDirectory.h"

#include <QDateTime>
#include <QDir>
#include <QFile>

#include <utility>

namespace tamsy {
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
    const QByteArray directory = baseDirectory(BaseDirectory::State) + "/Tamsy Music";
    QDir().mkpath(QFile::decodeName(directory));
    fileURL_ = directory + "/playback.log";
    writer_ = std::jthread([this](const std::stop_token& stop) { runWriter(stop); });
}

QString PlaybackLogger::timestamp() {
    static const QString dateFormatter = QStringLiteral("yyyy-MM-dd HH:mm:ss.zzz");
    return QDateTime::currentDateTime().toString(dateFormatter);
}

void PlaybackLogger::write(const QString& message) {
    const QString line = timestamp() + QLatin1Char(' ') + message + QLatin1Char('\n');
    {
        const std::scoped_lock lock(mutex_);
        lines_ += line.toUtf8();
    }
    changed_.notify_one();
}

void PlaybackLogger::runWriter(const std::stop_token& stop) {
    std::unique_lock lock(mutex_);
    while (changed_.wait(lock, stop, [this] { return !lines_.isEmpty(); })) {
        const QByteArray lines = std::exchange(lines_, {});
        lock.unlock();
        QFile file(QFile::decodeName(fileURL_));
        if (file.open(QIODevice::WriteOnly | QIODevice::Append))
            file.write(lines);
        lock.lock();
    }
}

} // namespace tamsy
