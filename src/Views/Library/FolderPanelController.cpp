#include "Views/Library/FolderPanelController.h"

#include "Views/Library/LocalAddress.h"

#include <QDir>
#include <QFile>
#include <QGuiApplication>
#include <QStandardPaths>

#include <utility>

namespace tamsy {

FolderPanelController::FolderPanelController(LastFolder lastFolder, QObject* parent)
    : QObject(parent), lastFolder_(std::move(lastFolder)) {
    connect(&portal_, &FolderPortal::finished, this, &FolderPanelController::complete);
    connect(&portal_, &FolderPortal::unavailable, this, [this] {
        const QByteArray address = startFolder().absoluteString();
        Q_EMIT requested(prompt_, message_, QUrl::fromEncoded(address, QUrl::StrictMode));
    });
}

/// The folder added last, else the user's music folder, else the home directory.
FileURL FolderPanelController::startFolder() const {
    if (const auto last = lastFolder_ ? lastFolder_() : std::nullopt)
        return *last;
    const QString music = QStandardPaths::writableLocation(QStandardPaths::MusicLocation);
    return FileURL::fromPath(QFile::encodeName(QDir(music).exists() ? music : QDir::homePath()));
}

void FolderPanelController::runModal(const QString& prompt, const QString& message,
                                     FolderPanel::Completion completion) {
    if (completion_ && !portal_.isOpen())
        return;
    prompt_ = prompt;
    message_ = message;
    completion_ = std::move(completion);
    portal_.open({.title = message,
                  .acceptLabel = prompt,
                  .startFolder = startFolder(),
                  .parent = QGuiApplication::focusWindow()});
}

void FolderPanelController::finish(const QUrl& url) {
    complete(localAddress(url));
}

void FolderPanelController::complete(const std::optional<FileURL>& folder) {
    if (const auto completion = std::exchange(completion_, nullptr))
        completion(folder);
}

} // namespace tamsy
