// Turns the engine's values into what the views show.

#include "Utils/CombineLatest.h"
#include "ViewModels/PlayerViewModel.h"
#include "ViewModels/TrackNavigation.h"

#include <cmath>

namespace tamsy {
namespace {

/// How close to a seek's target a reported position must be to confirm it, in seconds.
constexpr double seekTolerance = 0.05;

} // namespace

void PlayerViewModel::bindEngine() {
    cancellables_.push_back(receiveOn(this, engine_->isPlayingPublisher(), [this](bool playing) {
        if (std::exchange(isPlaying_, playing) != playing)
            Q_EMIT isPlayingChanged();
    }));
    cancellables_.push_back(receiveOn(this, engine_->durationPublisher(), [this](double duration) {
        if (std::exchange(duration_, duration) != duration)
            Q_EMIT durationChanged();
    }));
    // The seeking flag isn't used; its change runs the handler again.
    Subscriptions combined = combineLatest(
        this,
        [this](double time, bool visible, std::optional<double> pending, bool /*seeking*/) {
            handleTime(time, visible, pending);
        },
        engine_->currentTimePublisher(), isUIVisible_.publisher(), pendingSeekTarget_.publisher(),
        isSeeking_.publisher());
    std::move(combined.begin(), combined.end(), std::back_inserter(cancellables_));
}

void PlayerViewModel::handleTime(double time, bool visible, std::optional<double> pending) {
    const double safeTime = std::isfinite(time) ? time : 0;
    if (pending) {
        if (std::abs(safeTime - *pending) > seekTolerance)
            return;
        setPendingSeekTarget(std::nullopt);
        setIsSeeking(false);
    }
    if (visible)
        setCurrentTime(safeTime);
    else
        lastBufferedTime_ = safeTime;
}

void PlayerViewModel::giveUpPendingSeek(unsigned seekNumber, unsigned startNumber) {
    const std::optional<double> target = pendingSeekTarget_.value();
    if (seekNumber != seekNumber_ || !target)
        return;
    setPendingSeekTarget(std::nullopt); // the display follows the engine's position again
    setIsSeeking(false);
    if (!isPlaying_ || startNumber != startNumber_)
        return;
    if (navigation::trackHasEnded(*target, duration_, isPlaying_)) {
        // The user seeked to the very end, which some decoders refuse.
        handleReport(*target, duration_, isPlaying_);
        return;
    }
    // An engine whose seek failed may report that it plays while its device has stopped.
    engine_->pause();
    engine_->play();
}

} // namespace tamsy
