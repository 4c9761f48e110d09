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

/// The program: creates the two view models and the windows and connects them. Everything here
/// exists until the program ends.
class Tamsy_MusicApp : public QObject {
    Q_OBJECT

  public:
    explicit Tamsy_MusicApp(UserDefaults& defaults, QObject* parent = nullptr);
    ~Tamsy_MusicApp() override;

    /// Opens the main window. If that fails, returns false and prints the reason to standard error.
    [[nodiscard]] bool openMainWindow();

    /// Brings the main window to the front. `activationToken` is the second start's, or empty.
    void raiseMainWindow(const QByteArray& activationToken);

    [[nodiscard]] QQuickWindow* mainWindow() const;

  private:
    /// Loads the main window. If a package is missing, prints one line that names it.
    void loadMainWindow();

    /// Called after the first frame, which none of this may delay.
    void joinDesktop();

    /// Restores the window's state from the last run, and stores its changes.
    void followWindowState(QQuickWindow* window);

    /// Records the window's state, which is stored once it stops changing.
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
    QQmlApplicationEngine engine_; // last, so that the views are destroyed first
};

} // namespace tamsy
