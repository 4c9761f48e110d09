#include "Views/Library/FolderPanelController.h"

#include "Views/Library/LocalAddress.h"

#include <QDir>
#include <QStandardPaths>

#include <utility>

namespace tamsy {

QUrl FolderPanelController::startFolder() {
    const QString music = QStandardPaths::writableLocation(QStandardPaths::MusicLocation);
    return QUrl::fromLocalFile(QDir(music).exists() ? music : QDir::homePath());
}

void FolderPanelController::runModal(const QString& prompt, const QString& message,
                                     FolderPanel::Completion completion) {
    if (completion_)
        return;
    completion_ = std::move(completion);
    Q_EMIT requested(prompt, message);
}

void FolderPanelController::finish(const QUrl& url) {
    const auto completion = std::exchange(completion_, nullptr);
    if (!completion)
        return;
    completion(localAddress(url));
}

} // namespace tamsy
