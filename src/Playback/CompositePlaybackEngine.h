#pragma once

#include "Playback/PublishingEngine.h"

#include <QByteArray>

#include <memory>

namespace tamsy {

/// The engine that the player uses. It chooses one of two engines for each file by the extension
/// and forwards that engine's values, so that nobody else knows which one is active. At most one of
/// the two is active. Operations run on the interface thread; values are forwarded on the thread
/// that sends them.
class CompositePlaybackEngine final : public PublishingEngine {
  public:
    CompositePlaybackEngine();

    /// Uses the given engines instead of the usual two.
    CompositePlaybackEngine(std::unique_ptr<AudioPlaybackEngine> miniaudioEngine,
                            std::unique_ptr<AudioPlaybackEngine> avEngine);

    /// Whether the miniaudio engine plays files with this extension (lower case, without dot). The
    /// media player engine plays all others.
    [[nodiscard]] static bool isMiniaudioFormat(const QByteArray& lowercasedExtension);

    void load(const FileURL& url) override;
    void prepare(const FileURL& url) override;
    void play() override;
    void pause() override;

    /// Sends nothing if no engine is active.
    void stop() override;
    void seek(double seconds) override;

    /// Forwarded to both engines, so that the inactive one has it when it becomes active.
    void setVolume(float volume) override;

    /// Forwarded to both engines.
    void setUpdateInterval(double seconds) override;

  private:
    [[nodiscard]] AudioPlaybackEngine& engineFor(const QByteArray& extension) const;
    void bindActiveEngine(const AudioPlaybackEngine& engine);

    const std::unique_ptr<AudioPlaybackEngine> miniaudioEngine_;
    const std::unique_ptr<AudioPlaybackEngine> avEngine_;
    AudioPlaybackEngine* activeEngine_ = nullptr; // the one that has the current file
    Subscriptions cancellables_;                  // to the active engine's three values
};

} // namespace tamsy
