#pragma once

#include "Playback/PublishingEngine.h"
#include "Utils/FileURL.h"

#include <algorithm>
#include <string>
#include <vector>

namespace tamsy {

/// An engine without sound that keeps the engines' contract and notes every call. Its time stands
/// still until a test advances it; a test may also send any values on the subjects itself.
class FakeEngine : public PublishingEngine {
  public:
    using PublishingEngine::currentTimeSubject_;
    using PublishingEngine::durationSubject_;
    using PublishingEngine::isPlayingSubject_;

    /// Every call in order: "load file:///x", "play", "seek 1.5", "volume 0.5", "interval 0.25".
    std::vector<std::string> calls;
    std::vector<FileURL> prepared;
    double loadedDuration = 0.0; // the length that the next loaded file has, in seconds
    double updateInterval = 0.25;

    void load(const FileURL& url) override {
        note("load " + url.absoluteString().toStdString());
        close();
        loaded_ = true;
        report(0, false);
    }
    void prepare(const FileURL& url) override { prepared.push_back(url); }
    void play() override {
        note("play");
        if (loaded_)
            isPlayingSubject_.send(true);
    }
    void pause() override {
        note("pause");
        if (loaded_)
            isPlayingSubject_.send(false);
    }
    void stop() override {
        note("stop");
        close();
    }
    void seek(double seconds) override {
        note("seek " + text(seconds));
        if (loaded_)
            report(seconds > 0 ? seconds : 0, isPlayingSubject_.value());
    }
    void setVolume(float newVolume) override { note("volume " + text(newVolume)); }
    void setUpdateInterval(double seconds) override {
        note("interval " + text(seconds));
        updateInterval = std::max(seconds, 0.05);
    }

    /// Lets `seconds` of playback pass, with a report at each update interval.
    void advance(double seconds) {
        for (double passed = updateInterval; isPlayingSubject_.value() && passed <= seconds;
             passed += updateInterval)
            report(currentTimeSubject_.value() + updateInterval, true);
    }

    [[nodiscard]] long loads() const {
        return std::ranges::count_if(calls,
                                     [](const auto& call) { return call.starts_with("load"); });
    }

  private:
    void note(std::string call) { calls.push_back(std::move(call)); }

    static std::string text(double number) { return QByteArray::number(number).toStdString(); }

    void close() {
        loaded_ = false;
        isPlayingSubject_.send(false);
        currentTimeSubject_.send(0);
    }

    void report(double time, bool playing) {
        durationSubject_.send(loadedDuration);
        currentTimeSubject_.send(time);
        isPlayingSubject_.send(playing);
    }

    bool loaded_ = false;
};

} // namespace tamsy
