#include "Playback/CompositePlaybackEngine.h"
#include "Playback/FakeEngine.h"
#include "Utils/FileURL.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace tamsy;
using testing::ElementsAre;

namespace {

struct TwoFakes {
    FakeEngine* first = new FakeEngine;
    FakeEngine* second = new FakeEngine;
    CompositePlaybackEngine engine{std::unique_ptr<FakeEngine>(first),
                                   std::unique_ptr<FakeEngine>(second)};
};

FileURL file(const char* name) {
    return FileURL::fromPath("/m").appending(name);
}

TEST(CompositePlaybackEngine, PicksTheEngineByTheExtension) {
    const std::pair<const char*, bool> rows[] = {
        {"a.mp3", true},  {"a.MP3", true},   {"a.wav", true},  {"a.Flac", true},
        {"a.OGG", true},  {"a.oga", true},   {"a.m4a", false}, {"a.aac", false},
        {"a.aif", false}, {"a.aiff", false}, {"a.caf", false}, {"a.xyz", false},
        {"mp3", false},   {"a.mp3.", false}, {".mp3", false},  {"a.opus", false},
    };
    for (const auto& [name, takesFirst] : rows) {
        TwoFakes fakes;
        fakes.engine.load(file(name));
        const std::string call = "load " + file(name).absoluteString().toStdString();
        EXPECT_EQ(fakes.first->calls.size(), takesFirst ? 1U : 0U) << name;
        EXPECT_THAT((takesFirst ? fakes.first : fakes.second)->calls, ElementsAre(call));
    }
}

TEST(CompositePlaybackEngine, HandsOverWithoutATraceOfTheOldFile) {
    TwoFakes fakes;
    fakes.first->loadedDuration = 10;
    fakes.second->loadedDuration = 20;
    fakes.engine.load(file("a.mp3"));
    fakes.engine.play();
    fakes.first->advance(0.25);
    EXPECT_EQ(fakes.engine.currentTimePublisher().value(), 0.25);
    fakes.first->calls.clear();

    std::vector<bool> playing;
    const auto subscription =
        fakes.engine.isPlayingPublisher().subscribe([&](bool value) { playing.push_back(value); });
    fakes.engine.load(file("b.m4a"));
    fakes.engine.play();
    fakes.engine.seek(3);
    fakes.engine.pause();
    fakes.engine.setVolume(0.25F); // this and the interval are for both
    fakes.engine.setUpdateInterval(1.5);
    EXPECT_THAT(fakes.first->calls, ElementsAre("stop", "volume 0.25", "interval 1.5"));
    EXPECT_THAT(fakes.second->calls, ElementsAre("load file:///m/b.m4a", "play", "seek 3", "pause",
                                                 "volume 0.25", "interval 1.5"));
    // now; the old engine's stop; the new one's latest value, load (close, state), play, seek,
    // pause
    EXPECT_THAT(playing, ElementsAre(true, false, false, false, false, true, true, false));
    fakes.first->currentTimeSubject_.send(9.9); // a stale tick
    fakes.first->isPlayingSubject_.send(true);
    EXPECT_EQ(fakes.engine.currentTimePublisher().value(), 3);
    EXPECT_EQ(fakes.engine.durationPublisher().value(), 20);
    EXPECT_FALSE(fakes.engine.isPlayingPublisher().value());
}

} // namespace
