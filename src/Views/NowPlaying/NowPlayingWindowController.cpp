#include "Views/NowPlaying/NowPlayingWindowController.h"

#include "Platform/Desktop/Visibility.h"
#include "ViewModels/LibraryViewModel.h"
#include "ViewModels/PlayerViewModel.h"
#include "Views/Controls/DecorationPalette.h"

#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickWindow>
#include <QScreen>
#include <QVariantMap>

#include <cstdio>

namespace tamsy {
namespace {

/// In the middle of its screen, and no larger than it.
void center(QWindow& window) {
    if (window.screen() == nullptr)
        return;
    const QRect available = window.screen()->availableGeometry();
    QRect frame(QPoint(), window.size().boundedTo(available.size()));
    frame.moveCenter(available.center());
    window.setGeometry(frame);
}

} // namespace

NowPlayingWindowController::NowPlayingWindowController(QQmlEngine& engine,
                                                       PlayerViewModel& playerVM,
                                                       LibraryViewModel& libraryVM,
                                                       LyricsFontSize& lyricsFontSize,
                                                       const Visibility* visibility) {
    std::printf("[NowPlayingWindowController] init window 1200x800\n");
    std::fflush(stdout);
    QQmlComponent component(
        &engine, QUrl(QStringLiteral("qrc:/qt/qml/Tamsy/NowPlaying/NowPlayingWindow.qml")));
    QObject* made =
        component.isReady()
            ? component.createWithInitialProperties(
                  {{QStringLiteral("player"), QVariant::fromValue(&playerVM)},
                   {QStringLiteral("library"), QVariant::fromValue(&libraryVM)},
                   {QStringLiteral("lyricsFontSize"), QVariant::fromValue(&lyricsFontSize)}})
            : nullptr;
    window_ = qobject_cast<QQuickWindow*>(made);
    if (window_.isNull()) {
        qCritical("%s", qUtf8Printable(component.errorString()));
        delete made;
        return;
    }
    QQmlEngine::setObjectOwnership(window_, QQmlEngine::CppOwnership);
    center(*window_);
    if (visibility == nullptr)
        return;
    QObject::connect(visibility, &Visibility::changed, window_, [window = window_, visibility] {
        window->setProperty("canBeSeen", visibility->canBeSeen(*window));
    });
}

NowPlayingWindowController::~NowPlayingWindowController() {
    delete window_.data();
}

void NowPlayingWindowController::makeKeyAndOrderFront() {
    if (window_.isNull())
        return;
    window_->setWindowStates(window_->windowStates() & ~Qt::WindowMinimized);
    {
        const DecorationPalette dark(*window_);
        window_->setVisible(true);
    }
    window_->raise();
    window_->requestActivate();
}

} // namespace tamsy
