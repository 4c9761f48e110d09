#include "Tamsy_MusicApp.h"

#include "Platform/InterfaceThread.h"
#include "Playback/CompositePlaybackEngine.h"
#include "Views/Appearance.h"
#include "Views/CoverProvider.h"

#include <QQuickWindow>
#include <QVariantMap>
#include <QtQml/QQmlExtensionPlugin>

Q_IMPORT_QML_PLUGIN(Tamsy_ViewsPlugin)
Q_IMPORT_QML_PLUGIN(TamsyPlugin)

namespace tamsy {

Tamsy_MusicApp::Tamsy_MusicApp(UserDefaults& defaults, QObject* parent)
    : QObject(parent),
      lyricsFontSizePoints_(defaults),
      library_(std::make_unique<FolderLibraryService>(),
               std::make_unique<WindowFolderPanel>(folderPanel_)),
      player_(std::make_unique<CompositePlaybackEngine>()) {
    Appearance::setColorScheme(&colorScheme_);
    engine_.addImageProvider(QStringLiteral("covers"), new CoverProvider); // the engine owns it
    engine_.addImportPath(QStringLiteral("qrc:/qt/qml"));
}

Tamsy_MusicApp::~Tamsy_MusicApp() {
    // Whoever waits for this thread is let go first; what they belong to is joined afterwards.
    InterfaceThread::releaseWaiters();
}

bool Tamsy_MusicApp::openMainWindow() {
    engine_.setInitialProperties(
        {{QStringLiteral("library"), QVariant::fromValue(&library_)},
         {QStringLiteral("player"), QVariant::fromValue(&player_)},
         {QStringLiteral("lyricsFontSize"), QVariant::fromValue(&lyricsFontSizePoints_)},
         {QStringLiteral("folderPanel"), QVariant::fromValue(&folderPanel_)}});
    engine_.load(QUrl(QStringLiteral("qrc:/qt/qml/Tamsy/MainWindow.qml")));
    if (mainWindow() == nullptr)
        return false;
    colorScheme_.waitForFirstAnswer();
    mainWindow()->show();
    return true;
}

QQuickWindow* Tamsy_MusicApp::mainWindow() const {
    return engine_.rootObjects().isEmpty()
               ? nullptr
               : qobject_cast<QQuickWindow*>(engine_.rootObjects().constFirst());
}

void Tamsy_MusicApp::raiseMainWindow() {
    QQuickWindow* window = mainWindow();
    if (window == nullptr)
        return;
    if (window->windowStates().testFlag(Qt::WindowMinimized))
        window->setWindowStates(window->windowStates() & ~Qt::WindowMinimized);
    window->raise();
    window->requestActivate();
}

} // namespace tamsy
