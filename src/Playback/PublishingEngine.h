#pragma once

#include "Playback/AudioPlaybackEngine.h"

namespace tamsy {

/// The three values that every engine publishes.
class PublishingEngine : public AudioPlaybackEngine {
  public:
    [[nodiscard]] Publisher<bool> isPlayingPublisher() const override {
        return isPlayingSubject_.publisher();
    }
    [[nodiscard]] Publisher<double> durationPublisher() const override {
        return durationSubject_.publisher();
    }
    [[nodiscard]] Publisher<double> currentTimePublisher() const override {
        return currentTimeSubject_.publisher();
    }

  protected:
    ValueSubject<bool> isPlayingSubject_{false};
    ValueSubject<double> durationSubject_{0};
    ValueSubject<double> currentTimeSubject_{0};
};

} // namespace tamsy
