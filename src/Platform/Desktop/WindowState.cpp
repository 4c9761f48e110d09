#include "Platform/Desktop/WindowState.h"

#include <QDir>
#include <QFile>
#include <QList>
#include <QSaveFile>
#include <QString>

namespace tamsy {
namespace {

constexpr int leastSide = 200;
constexpr int greatestSide = 20000;
constexpr qint64 greatestFileSize = 100;

QString stateDirectory() {
    QString base = qEnvironmentVariable("XDG_STATE_HOME");
    if (!QDir::isAbsolutePath(base))
        base = QDir::homePath() + QLatin1String("/.local/state");
    return base + QLatin1String("/Tamsy Music");
}

QString stateFile() {
    return stateDirectory() + QLatin1String("/window");
}

bool isSensible(int side) {
    return side >= leastSide && side <= greatestSide;
}

} // namespace

std::optional<WindowState> WindowState::load() {
    QFile file(stateFile());
    if (!file.open(QIODevice::ReadOnly))
        return std::nullopt;
    const QList<QByteArray> words = file.read(greatestFileSize).simplified().split(' ');
    if (words.size() < 3)
        return std::nullopt;
    const QSize size(words[0].toInt(), words[1].toInt());
    if (!isSensible(size.width()) || !isSensible(size.height()))
        return std::nullopt;
    const int sidebarWidth = words.value(3).toInt(); // older files have none
    return WindowState{size, words[2] == "maximized", isSensible(sidebarWidth) ? sidebarWidth : 0};
}

void WindowState::save() const {
    QDir().mkpath(stateDirectory());
    QSaveFile file(stateFile());
    if (!file.open(QIODevice::WriteOnly))
        return;
    file.write(QByteArray::number(size.width()) + ' ' + QByteArray::number(size.height()) + ' ' +
               (isMaximized ? "maximized" : "normal") + ' ' + QByteArray::number(sidebarWidth) +
               '\n');
    file.commit();
}

} // namespace tamsy
