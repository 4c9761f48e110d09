#include "Platform/Desktop/WindowState.h"

#include "Platform/Storage/StoredFile.h"
#include "Utils/BaseDirectory.h"

#include <QList>

namespace tamsy {
namespace {

constexpr int minSide = 200;
constexpr int maxSide = 20000;

StoredFile stateFile() {
    return StoredFile(baseDirectory(BaseDirectory::State) + "/Tamsy Music/window");
}

bool isSensible(int side) {
    return side >= minSide && side <= maxSide;
}

} // namespace

std::optional<WindowState> WindowState::load() {
    const auto content = stateFile().read();
    if (!content)
        return std::nullopt;
    const QList<QByteArray> words = content->simplified().split(' ');
    if (words.size() < 3)
        return std::nullopt;
    const QSize size(words[0].toInt(), words[1].toInt());
    if (!isSensible(size.width()) || !isSensible(size.height()))
        return std::nullopt;
    const int sidebarWidth = words.value(3).toInt(); // older files have none
    return WindowState{size, words[2] == "maximized", isSensible(sidebarWidth) ? sidebarWidth : 0};
}

void WindowState::save() const {
    const QByteArray words =
        QByteArray::number(size.width()) + ' ' + QByteArray::number(size.height()) + ' ' +
        (isMaximized ? "maximized" : "normal") + ' ' + QByteArray::number(sidebarWidth) + '\n';
    // A failure only costs the user a resize.
    static_cast<void>(stateFile().replaceUnsynced(words));
}

} // namespace tamsy
