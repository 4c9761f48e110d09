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

/// The folder picker between the library, which asks for it, and what shows it: the desktop's
/// portal, or the window where there is none.
class FolderPanelController : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The program makes the one panel.")

  public:
    /// Gives a folder that the library has, if it has one.
    using LastFolder = std::function<std::optional<FileURL>()>;

    explicit FolderPanelController(LastFolder lastFolder = {}, QObject* parent = nullptr);

    /// A request while the window's panel is open is dropped: that one is modal. The portal's may
    /// have been lost on the way to the screen, so a new one takes its place.
    void runModal(const QString& prompt, const QString& message,
                  FolderPanel::Completion completion);

    /// The window reports the user's choice: an address, or an empty one for none. The picker gives
    /// addresses as text, so a folder whose name isn't valid UTF-8 may have to be chosen through a
    /// folder above it.
    Q_INVOKABLE void finish(const QUrl& url);

  Q_SIGNALS:
    /// The window is to show its panel.
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

/// The library's hold on the controller, which outlives it.
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
