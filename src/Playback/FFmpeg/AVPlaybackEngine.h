#pragma once

#include "Playback/PublishingEngine.h"

#include <memory>

namespace tamsy {

class MediaPlayer;
class MediaPlaybackThread;

/// The engine that uses the media player, for all files that the miniaudio engine doesn't play. It
/// doesn't poll: the player's observers push position, duration and status.
///
/// The player's thread opens the file, so `load` returns at once and the duration follows later.
/// Interface thread only; all values are sent on it.
class AVPlaybackEngine : public PublishingEngine {
  public:
    AVPlaybackEngine();
    ~AVPlaybackEngine() override;

    void load(const FileURL& url) override;
    void prepare(const FileURL& url) override;
    void play() override;
    void pause() override;

    /// Sends false, position 0 and duration 0.
    void stop() override;

    /// Sends nothing itself: the player reports the target once it is reached.
    void seek(double seconds) override;
    void setVolume(float volume) override;
    void setUpdateInterval(double seconds) override;

  private:
    void addPeriodicTimeObserver();
    void removeObservers();
    void itemDidEnd();

    const std::unique_ptr<MediaPlaybackThread> thread_; // used by one player after another
    std::unique_ptr<MediaPlayer> player_;               // kept after `stop()`, without an item
    Subscription timeObserverToken_;
    Subscription timeControlObserver_;
    Subscription endObserver_;
    float currentVolume_ = 0.5F;
    double updateInterval_ = 0.25; // seconds
    Subscriptions subscriptions_;  // the duration observation
};

} // namespace tamsy
