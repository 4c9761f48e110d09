#pragma once

#include "Desktop/DesktopIntegration.h"
#include "Platform/Desktop/ColorScheme.h"
#include "Platform/Desktop/Visibility.h"
#include "Platform/Desktop/WindowState.h"
#include "Platform/Threads/OperationQueue.h"
#include "ViewModels/LibraryViewModel.h"
#include "ViewModels/LyricsFontSize.h"
#include "ViewModels/PlayerViewModel.h"
#include "Views/Library/FolderPanelController.h"

#include <QByteArray>
#include <QObject>
#include <QQmlApplicationEngine>
#include <QTimer>

#include <memory>
#include <optional>

class QQuickWindow;

namespace tamsy {

/// The program: makes the two view models, opens the windows and wires them together.
/// Everything here lives until the program ends.
class Tamsy_MusicApp : public QObject {
    Q_OBJECT

  public:
    explicit Tamsy_MusicApp(UserDefaults& defaults, QObject* parent = nullptr);
    ~Tamsy_MusicApp() override;

    /// Opens the main window. False, and why on standard error, if it can't be made.
    [[nodiscard]] bool openMainWindow();

    /// Brings the main window to the front, with the token that another start was given to do so,
    /// or an empty one.
    void raiseMainWindow(const QByteArray& activationToken);

    [[nodiscard]] QQuickWindow* mainWindow() const;

  private:
    /// Loads the main window. What stops it is said in one line if it is a package that is missing.
    void loadMainWindow();

    /// Once the window has shown its first frame, which nothing of it may delay.
    void joinDesktop();

    /// Shows the window as the user left it, and remembers how this run leaves it.
    void followWindowState(QQuickWindow* window);

    /// Takes the window's state as it is now; it is stored once it has come to rest.
    Q_SLOT void noteWindowState();
    void saveWindowState();

    [[nodiscard]] std::optional<FileURL> lastFolder() const;

    WindowState windowState_;
    std::optional<WindowState> savedWindowState_;
    QTimer savingWindowState_;
    OperationQueue windowStateWriter_{1, "window state"};
    Visibility visibility_;
    ColorScheme colorScheme_;
    FolderPanelController folderPanel_;
    LyricsFontSize lyricsFontSizePoints_;
    LibraryViewModel library_;
    PlayerViewModel player_;
    std::unique_ptr<DesktopIntegration> desktop_;
    QQmlApplicationEngine engine_; // last, so that the views end before what they show
};

} // namespace tamsy
