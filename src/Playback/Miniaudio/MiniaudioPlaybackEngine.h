#pragma once

#include "Playback/PublishingEngine.h"
#include "Utils/FileURL.h"

#include <QBasicTimer>
#include <QObject>

#include <memory>

namespace tamsy {

/// The engine that uses the miniaudio bridge. It polls the bridge while a file plays and reports
/// its values; it doesn't detect the end, after which the position rises past the duration. After
/// `stop()` the duration stays that of the last file until the next load. Interface thread only.
class MiniaudioPlaybackEngine final : public QObject, public PublishingEngine {
  public:
    MiniaudioPlaybackEngine() = default;
    ~MiniaudioPlaybackEngine() override;

    void load(const FileURL& url) override;
    void prepare(const FileURL& url) override;
    void play() override;
    void pause() override;
    void stop() override;

    /// Reports the new position at once. A failed seek leaves sound and position unchanged.
    void seek(double seconds) override;
    void setVolume(float volume) override;
    void setUpdateInterval(double seconds) override;

  protected:
    void timerEvent(QTimerEvent* event) override;

  private:
    struct HandleDeleter {
        void operator()(void* player) const;
    };

    using Handle = std::unique_ptr<void, HandleDeleter>;

    [[nodiscard]] Handle takePrepared(const FileURL& url);
    void startTimer();
    void sendState();
    void tick();
    void waitForFile();
    [[nodiscard]] bool isFileReady();
    void resume();
    void returnToPosition();
    void checkOutput();

    Handle handle_;   // the open player
    Handle prepared_; // the next file's
    FileURL preparedURL_;
    QBasicTimer timer_;           // runs only while playing
    QBasicTimer waitTimer_;       // runs only while the player waits
    QBasicTimer outputTimer_;     // runs only while a playing output is lost
    bool playsWhenReady_ = false; // playback starts once the file is ready
    float currentVolume_ = 0.5F;  // given to each new player
    double updateInterval_ = 0.2; // seconds
};

} // namespace tamsy
