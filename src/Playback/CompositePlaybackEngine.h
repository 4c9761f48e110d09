#pragma once

#include "Playback/PublishingEngine.h"

#include <QByteArray>

#include <memory>

namespace tamsy {

/// The engine that the player sees. It picks one of its two engines for each file by the extension
/// and tells that engine's values as its own, so that nobody else learns which one is at work. At
/// most one of the two is active. Operations on the interface thread; values pass on the thread
/// that sends them.
class CompositePlaybackEngine final : public PublishingEngine {
  public:
    CompositePlaybackEngine();

    /// With engines of the caller's choice in the places of the two.
    CompositePlaybackEngine(std::unique_ptr<AudioPlaybackEngine> miniaudioEngine,
                            std::unique_ptr<AudioPlaybackEngine> avEngine);

    /// Whether a file with this extension, in lower case and without its dot, goes to the
    /// miniaudio engine; all others go to the platform media engine.
    [[nodiscard]] static bool isMiniaudioFormat(const QByteArray& lowercasedExtension);

    void load(const FileURL& url) override;
    void play() override;
    void pause() override;

    /// With no active engine nothing is sent.
    void stop() override;
    void seek(double seconds) override;

    /// Goes to both engines, so that the one that takes over has it already.
    void setVolume(float volume) override;

    /// Goes to both engines.
    void setUpdateInterval(double seconds) override;

  private:
    void bindActiveEngine(const AudioPlaybackEngine& engine);

    const std::unique_ptr<AudioPlaybackEngine> miniaudioEngine_;
    const std::unique_ptr<AudioPlaybackEngine> avEngine_;
    AudioPlaybackEngine* activeEngine_ = nullptr; // one of the two; holds the current file
    Subscriptions cancellables_;                  // the active engine's three values
};

} // namespace tamsy
