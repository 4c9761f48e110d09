#pragma once

#include "ViewModels/FolderPanel.h"

#include <QObject>
#include <QString>
#include <QUrl>
#include <QtQml/qqmlregistration.h>

namespace tamsy {

/// The folder picker between the library, which asks for it, and the window, which shows it.
class FolderPanelController : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The program makes the one panel.")
    Q_PROPERTY(QUrl startFolder READ startFolder CONSTANT)

  public:
    using QObject::QObject;

    /// Where the picker begins: the user's music folder, or home where there is none.
    [[nodiscard]] static QUrl startFolder();

    /// A request while a panel is open is dropped: the open one is modal.
    void runModal(const QString& prompt, const QString& message,
                  FolderPanel::Completion completion);

    /// The window reports the user's choice: an address, or an empty one for none. The picker gives
    /// addresses as text, so a folder whose name isn't valid UTF-8 may have to be chosen through a
    /// folder above it.
    Q_INVOKABLE void finish(const QUrl& url);

  Q_SIGNALS:
    void requested(const QString& prompt, const QString& message);

  private:
    FolderPanel::Completion completion_;
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
