#pragma once

#include "Platform/Desktop/FolderPortal.h"
#include "ViewModels/FolderPanel.h"

#include <QObject>
#include <QString>
#include <QUrl>
#include <QtQml/qqmlregistration.h>

#include <functional>
#include <optional>

namespace tamsy {

/// Connects the library's request for a folder with the panel that is shown: the desktop's portal,
/// or the window's own panel if there is none.
class FolderPanelController : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The program makes the one panel.")

  public:
    /// Returns a folder of the library, if it has one.
    using LastFolder = std::function<std::optional<FileURL>()>;

    explicit FolderPanelController(LastFolder lastFolder = {}, QObject* parent = nullptr);

    /// A request while the window's panel is open is ignored, since that panel is modal. The
    /// portal's panel may have failed to appear, so a new one replaces it.
    void runModal(const QString& prompt, const QString& message,
                  FolderPanel::Completion completion);

    /// Called by the window with the user's choice, empty for none. Qt's panel returns addresses as
    /// text, so a folder whose name isn't valid UTF-8 can only be chosen through a parent folder.
    Q_INVOKABLE void finish(const QUrl& url);

  Q_SIGNALS:
    /// Asks the window to show its panel.
    void requested(const QString& prompt, const QString& message, const QUrl& startFolder);

  private:
    [[nodiscard]] FileURL startFolder() const;
    void complete(const std::optional<FileURL>& folder);

    LastFolder lastFolder_;
    QString prompt_;
    QString message_;
    FolderPanel::Completion completion_;
    FolderPortal portal_;
};

/// Implements the library's interface with the controller, which must outlive it.
class WindowFolderPanel : public FolderPanel {
  public:
    explicit WindowFolderPanel(FolderPanelController& controller) : controller_(controller) {}

    void runModal(const QString& prompt, const QString& message, Completion completion) override {
        controller_.runModal(prompt, message, std::move(completion));
    }

  private:
    FolderPanelController& controller_;
};

} // namespace tamsy
