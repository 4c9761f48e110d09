#pragma once

#include "Playback/PublishingEngine.h"

#include <memory>

namespace tamsy {

class MediaPlayer;
class MediaPlaybackThread;

/// The engine over the platform's media player: it plays every file that the first engine doesn't
/// take. It never asks: the player's observers push position, duration and status to it.
///
/// Opening happens on the player's own thread, so `load` returns at once; the duration follows when
/// it is known. Everything here belongs to the interface thread, and all values are sent on it.
class AVPlaybackEngine : public PublishingEngine {
  public:
    AVPlaybackEngine();
    ~AVPlaybackEngine() override;

    void load(const FileURL& url) override;
    void play() override;
    void pause() override;

    /// Sends false, position 0 and duration 0.
    void stop() override;

    /// Sends nothing by itself: the player reports the target as soon as it is there.
    void seek(double seconds) override;
    void setVolume(float volume) override;
    void setUpdateInterval(double seconds) override;

  private:
    void addPeriodicTimeObserver();
    void removeObservers();
    void itemDidEnd();

    const std::unique_ptr<MediaPlaybackThread> thread_; // shared by the players, one after another
    std::unique_ptr<MediaPlayer> player_;               // kept after `stop()` without an item
    Subscription timeObserverToken_;
    Subscription timeControlObserver_;
    Subscription endObserver_;
    float currentVolume_ = 0.5F;
    double updateInterval_ = 0.25; // seconds
    Subscriptions subscriptions_;  // the duration observation
};

} // namespace tamsy
