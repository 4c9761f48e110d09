#include "Platform/Desktop/Visibility.h"

#include "Platform/Desktop/X11Occlusion.h"

#include <QEvent>
#include <QGuiApplication>
#include <QPlatformSurfaceEvent>
#include <QWindow>

#include <algorithm>
#include <utility>

namespace tamsy {
namespace {

bool isHiddenState(Qt::ApplicationState state) {
    return state == Qt::ApplicationHidden || state == Qt::ApplicationSuspended;
}

bool isMiniaturized(const QWindow& window) {
    return window.windowStates().testFlag(Qt::WindowMinimized);
}

} // namespace

Visibility::Visibility(QObject* parent)
    : QObject(parent),
      applicationState_(QGuiApplication::applicationState()),
      occlusion_(X11Occlusion::make([this] { updateAll(); })) {
    connect(qGuiApp, &QGuiApplication::applicationStateChanged, this,
            &Visibility::applicationStateChanged);
    for (QWindow* window : QGuiApplication::topLevelWindows()) {
        if (occlusion_)
            occlusion_->watch(*window);
        update(window);
    }
    qGuiApp->installEventFilter(this);
}

Visibility::~Visibility() = default;

bool Visibility::isApplicationActive() const {
    return applicationState_ == Qt::ApplicationActive;
}

bool Visibility::isApplicationHidden() const {
    return isHiddenState(applicationState_);
}

bool Visibility::isAnyWindowVisible() const {
    return std::ranges::any_of(windows_, [](const WindowState& window) {
        return window.canBeSeen && !window.isMiniaturized;
    });
}

bool Visibility::canBeSeen(const QWindow& window) const {
    return windows_.value(const_cast<QWindow*>(&window)).canBeSeen; // NOLINT: only used as a key
}

bool Visibility::eventFilter(QObject* watched, QEvent* event) {
    auto* window = watched->isWindowType() ? static_cast<QWindow*>(watched) : nullptr;
    if (window == nullptr || !window->isTopLevel())
        return false;
    switch (event->type()) {
    case QEvent::PlatformSurface:
        if (static_cast<QPlatformSurfaceEvent*>(event)->surfaceEventType() ==
            QPlatformSurfaceEvent::SurfaceAboutToBeDestroyed)
            forget(window);
        break;
    case QEvent::Show:
        if (occlusion_)
            occlusion_->watch(*window);
        [[fallthrough]];
    case QEvent::Hide:
    case QEvent::Expose:
    case QEvent::WindowStateChange:
    case QEvent::Move:
    case QEvent::Resize:
        update(window);
        updateAll(); // windows below it may have become visible or hidden
        break;
    case QEvent::UpdateRequest:
        return holdFrameBack(window);
    default:
        break;
    }
    return false;
}

void Visibility::applicationStateChanged(Qt::ApplicationState state) {
    const Qt::ApplicationState former = std::exchange(applicationState_, state);
    if (isHiddenState(former) != isHiddenState(state))
        Q_EMIT changed(isHiddenState(state) ? Occasion::ApplicationDidHide
                                            : Occasion::ApplicationDidUnhide);
    if ((former == Qt::ApplicationActive) != (state == Qt::ApplicationActive))
        Q_EMIT changed(state == Qt::ApplicationActive ? Occasion::ApplicationDidBecomeActive
                                                      : Occasion::ApplicationDidResignActive);
}

void Visibility::update(QWindow* window) {
    if (window->handle() == nullptr)
        return; // it has no native window yet, or is no longer tracked
    const WindowState now{isMiniaturized(*window), isInSight(*window) && !isBelowAnother(*window)};
    const WindowState former = std::exchange(windows_[window], now);
    if (former.owesFrame && now.canBeSeen)
        window->requestUpdate();
    else
        windows_[window].owesFrame = former.owesFrame;
    if (former.isMiniaturized != now.isMiniaturized)
        Q_EMIT changed(now.isMiniaturized ? Occasion::WindowDidMiniaturize
                                          : Occasion::WindowDidDeminiaturize);
    if (former.canBeSeen != now.canBeSeen)
        Q_EMIT changed(Occasion::WindowDidChangeOcclusionState);
}

bool Visibility::isInSight(const QWindow& window) const {
    return window.isVisible() && window.isExposed() &&
           !(occlusion_ && occlusion_->isOutOfSight(window));
}

bool Visibility::isBelowAnother(const QWindow& window) const {
    if (!occlusion_)
        return false;
    return std::ranges::any_of(windows_.keys(), [&](const QWindow* other) {
        return other != &window && isInSight(*other) && !isMiniaturized(*other) &&
               other->opacity() >= 1 && !other->requestedFormat().hasAlpha() &&
               other->geometry().contains(window.geometry()) && occlusion_->isAbove(*other, window);
    });
}

/// Qt keeps drawing covered windows.
bool Visibility::holdFrameBack(QWindow* window) {
    const auto state = windows_.find(window);
    if (!occlusion_ || state == windows_.end() || state->canBeSeen || !window->isExposed())
        return false;
    state->owesFrame = true;
    return true;
}

void Visibility::updateAll() {
    const auto windows = windows_.keys();
    for (QWindow* window : windows) {
        if (windows_.contains(window))
            update(window);
    }
}

void Visibility::forget(QWindow* window) {
    if (occlusion_)
        occlusion_->forget(*window);
    if (windows_.take(window).canBeSeen)
        Q_EMIT changed(Occasion::WindowDidChangeOcclusionState);
}

} // namespace tamsy
