// While the interface is hidden, time is reported less often and not passed on to the views.

#include "ViewModels/PlayerViewModel.h"

namespace tamsy {
namespace {

constexpr double visibleUpdateInterval = 0.25; // seconds
constexpr double hiddenUpdateInterval = 1.2;   // seconds

} // namespace

void PlayerViewModel::wireVisibilityObservers() {
    if (dependencies_.visibility != nullptr)
        connect(dependencies_.visibility, &Visibility::changed, this,
                &PlayerViewModel::recomputeVisibilityAndAdjust);
    recomputeVisibilityAndAdjust();
}

void PlayerViewModel::recomputeVisibilityAndAdjust() {
    const Visibility* visibility = dependencies_.visibility;
    const bool appActive = visibility == nullptr || (visibility->isApplicationActive() &&
                                                     !visibility->isApplicationHidden());
    const bool anyWindowVisible = visibility == nullptr || visibility->isAnyWindowVisible();
    const bool visible = appActive && anyWindowVisible;
    const bool wasVisible = isUIVisible();
    if (visible != wasVisible) {
        isUIVisible_.send(visible);
        Q_EMIT isUIVisibleChanged();
    }
    engine_->setUpdateInterval(visible ? visibleUpdateInterval : hiddenUpdateInterval);
    // The display catches up at once instead of waiting for the next report.
    if (!wasVisible && visible && lastBufferedTime_ > 0)
        setCurrentTime(lastBufferedTime_);
}

} // namespace tamsy
