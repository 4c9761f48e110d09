#include "Tamsy_MusicApp.h"

#include "Platform/Desktop/MissingPackages.h"
#include "Platform/Threads/InterfaceThread.h"
#include "Playback/CompositePlaybackEngine.h"
#include "Views/Controls/Appearance.h"
#include "Views/Controls/CoverProvider.h"
#include "Views/Controls/DecorationPalette.h"
#include "Views/NowPlaying/NowPlayingWindowController.h"

#include <QCoreApplication>
#include <QQuickWindow>
#include <QVariantMap>
#include <QtQml/QQmlExtensionPlugin>

#include <chrono>

Q_IMPORT_QML_PLUGIN(Tamsy_NowPlayingPlugin)
Q_IMPORT_QML_PLUGIN(Tamsy_ControlsPlugin)
Q_IMPORT_QML_PLUGIN(Tamsy_LibraryPlugin)
Q_IMPORT_QML_PLUGIN(TamsyPlugin)

namespace tamsy {
namespace {

/// How long the window's state must be unchanged before it is stored.
constexpr std::chrono::milliseconds windowStateDelay{250};

} // namespace

Tamsy_MusicApp::Tamsy_MusicApp(UserDefaults& defaults, QObject* parent)
    : QObject(parent),
      folderPanel_([this] { return lastFolder(); }),
      lyricsFontSizePoints_(defaults),
      library_(std::make_unique<FolderLibraryService>(defaults),
               std::make_unique<WindowFolderPanel>(folderPanel_)),
      player_(
          std::make_unique<CompositePlaybackEngine>(),
          {.visibility = &visibility_,
           .makeNowPlayingWindow = [this](PlayerViewModel& playerVM, LibraryViewModel& libraryVM) {
               return std::make_unique<NowPlayingWindowController>(
                   engine_, playerVM, libraryVM, lyricsFontSizePoints_, &visibility_);
           }}) {
    Appearance::setColorScheme(engine_, colorScheme_);
    engine_.addImageProvider(QStringLiteral("covers"), new CoverProvider); // the engine owns it
    engine_.addImportPath(QStringLiteral("qrc:/qt/qml"));
}

Tamsy_MusicApp::~Tamsy_MusicApp() {
    // Threads that wait for this one are released before anything joins them.
    InterfaceThread::releaseWaiters();
    player_.endNowPlayingWindow(); // before the engine that created it
    windowStateWriter_.endWithin(OperationQueue::endTimeout);
    if (windowState_.size.isValid())
        windowState_.save(); // the writer may not have
}

bool Tamsy_MusicApp::openMainWindow() {
    engine_.setInitialProperties(
        {{QStringLiteral("library"), QVariant::fromValue(&library_)},
         {QStringLiteral("player"), QVariant::fromValue(&player_)},
         {QStringLiteral("lyricsFontSize"), QVariant::fromValue(&lyricsFontSizePoints_)},
         {QStringLiteral("folderPanel"), QVariant::fromValue(&folderPanel_)}});
    loadMainWindow();
    QQuickWindow* window = mainWindow();
    if (window == nullptr)
        return false;
    colorScheme_.waitForFirstAnswer();
    followWindowState(window);
    connect(window, &QQuickWindow::frameSwapped, this, &Tamsy_MusicApp::joinDesktop,
            Qt::SingleShotConnection);
    // Queued: first the window takes the new colours.
    connect(
        &colorScheme_, &ColorScheme::isDarkChanged, window,
        [window] { repaintDecoration(*window); }, Qt::QueuedConnection);
    return true;
}

void Tamsy_MusicApp::loadMainWindow() {
    QStringList errors;
    QString package;
    engine_.setOutputWarningsToStandardError(false);
    const QMetaObject::Connection collecting =
        connect(&engine_, &QQmlEngine::warnings, this, [&](const QList<QQmlError>& found) {
            for (const QQmlError& error : found) {
                errors.append(error.toString());
                if (package.isEmpty())
                    package = packageOfMissingModule(error.description());
            }
        });
    engine_.load(QUrl(QStringLiteral("qrc:/qt/qml/Tamsy/MainWindow.qml")));
    disconnect(collecting);
    engine_.setOutputWarningsToStandardError(true);
    if (!package.isEmpty())
        errors = {QStringLiteral("[Start] no window: install ") + package};
    for (const QString& error : std::as_const(errors))
        qWarning("%s", qUtf8Printable(error));
}

void Tamsy_MusicApp::joinDesktop() {
    reportMissingPackages();
    desktop_ = std::make_unique<DesktopIntegration>(
        player_, library_,
        RemoteControls::Program{.raise = [this] { raiseMainWindow({}); },
                                .quit = [] { QCoreApplication::quit(); }});
}

void Tamsy_MusicApp::followWindowState(QQuickWindow* window) {
    const std::optional<WindowState> stored = WindowState::load();
    if (stored)
        window->resize(stored->size);
    windowState_ = stored.value_or(WindowState{window->size()});
    savedWindowState_ = stored;
    window->setProperty("sidebarWidth", windowState_.sidebarWidth);
    savingWindowState_.setSingleShot(true);
    savingWindowState_.setInterval(windowStateDelay);
    connect(&savingWindowState_, &QTimer::timeout, this, &Tamsy_MusicApp::saveWindowState);
    connect(window, &QWindow::widthChanged, this, &Tamsy_MusicApp::noteWindowState);
    connect(window, &QWindow::heightChanged, this, &Tamsy_MusicApp::noteWindowState);
    connect(window, &QWindow::visibilityChanged, this, &Tamsy_MusicApp::noteWindowState);
    connect(window, SIGNAL(sidebarWidthChanged()), this, SLOT(noteWindowState()));
    const DecorationPalette colors(*window);
    window->setVisibility(stored && stored->isMaximized ? QWindow::Maximized : QWindow::Windowed);
}

void Tamsy_MusicApp::noteWindowState() {
    const QQuickWindow* window = mainWindow();
    if (window == nullptr)
        return;
    const QWindow::Visibility visibility = window->visibility();
    if (visibility == QWindow::Windowed)
        windowState_ = {window->size(), false, 0};
    else if (visibility == QWindow::Maximized)
        windowState_.isMaximized = true;
    windowState_.sidebarWidth = window->property("sidebarWidth").toInt();
    savingWindowState_.start();
}

void Tamsy_MusicApp::saveWindowState() {
    savingWindowState_.stop();
    if (savedWindowState_ == windowState_)
        return;
    savedWindowState_ = windowState_;
    windowStateWriter_.add(std::make_shared<Operation>([state = windowState_] { state.save(); }));
}

std::optional<FileURL> Tamsy_MusicApp::lastFolder() const {
    const QList<AudioFolder>& folders = library_.folders();
    return folders.isEmpty() ? std::nullopt : std::optional(folders.constLast().url);
}

QQuickWindow* Tamsy_MusicApp::mainWindow() const {
    return engine_.rootObjects().isEmpty()
               ? nullptr
               : qobject_cast<QQuickWindow*>(engine_.rootObjects().constFirst());
}

void Tamsy_MusicApp::raiseMainWindow(const QByteArray& activationToken) {
    QQuickWindow* window = mainWindow();
    if (window == nullptr)
        return;
    if (window->windowStates().testFlag(Qt::WindowMinimized))
        window->setWindowStates(window->windowStates() & ~Qt::WindowMinimized);
    // Some compositors let a window come to the front only with the token of the second start.
    qputenv("XDG_ACTIVATION_TOKEN", activationToken);
    window->raise();
    window->requestActivate();
    window->alert(0); // where it may not come to the front; ends as soon as it has the focus
}

} // namespace tamsy
