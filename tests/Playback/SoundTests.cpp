#include "Playback/CompositePlaybackEngine.h"
#include "Playback/SoundRecording.h"
#include "Playback/TestAudio.h"

#include <QElapsedTimer>

#include <algorithm>
#include <csignal>

using namespace tamsy;
using namespace tamsy::test;

namespace {

constexpr double toneAmplitude = 0.5;
constexpr std::size_t window = 480; // 10 ms, which tells tones 150 Hz apart

double toneOf(std::size_t extension) {
    return 500 + 100 * static_cast<double>(extension);
}

double toneOfStep(int second) {
    return 500 + 150 * second;
}

QByteArray toneFile(std::size_t extension) {
    return "tone-" + QByteArray::number(toneOf(extension)) + '.' + extensions[extension];
}

class Sound : public testing::Test {
  protected:
    Sound() { engine.setVolume(1); }

    void load(const QByteArray& name) { engine.load(testAudio(name)); }

    void play(const QByteArray& name) {
        load(name);
        engine.play();
    }

    /// Seeks and waits for the report of it; what was recorded up to the call.
    std::size_t seek(double seconds) {
        EXPECT_TRUE(waitUntil([&] { return engine.durationPublisher().value() > 0; }));
        bool isThere = false;
        const auto subscription = engine.currentTimePublisher().subscribe(
            [&](double time) { isThere = isThere || std::abs(time - seconds) <= 0.05; });
        const std::size_t before = recording.size();
        engine.seek(seconds);
        EXPECT_TRUE(waitUntil([&] { return isThere; })) << seconds;
        return before;
    }

    /// Where, from `first` on, a tone is heard for the first and the last time; in seconds from
    /// there.
    std::pair<double, double> heard(std::size_t first, double hertz) {
        const auto samples = recording.from(first);
        std::pair<double, double> places = {-1, -1};
        for (std::size_t at = 0; at + window <= samples.size(); at += window / 10) {
            if (amplitude(samples.subspan(at, window), hertz) < 0.6 * toneAmplitude)
                continue;
            const double middle = static_cast<double>(at + window / 2) / SoundRecording::sampleRate;
            if (places.first < 0)
                places.first = middle;
            places.second = middle;
        }
        return places;
    }

    /// For how long, from `first` on, a tone is heard in all; a gap that a busy machine leaves
    /// doesn't count.
    double sounding(std::size_t first, double hertz) {
        constexpr std::size_t step = window / 10;
        const auto samples = recording.from(first);
        std::size_t count = 0;
        for (std::size_t at = 0; at + window <= samples.size(); at += step)
            count += amplitude(samples.subspan(at, window), hertz) > 0.5 * toneAmplitude ? 1U : 0U;
        return static_cast<double>(count * step) / SoundRecording::sampleRate;
    }

    /// The amplitude of a tone in most of what is heard from `first` on.
    double usualAmplitude(std::size_t first, double hertz) {
        const auto samples = recording.from(first);
        std::vector<double> found;
        for (std::size_t at = 0; at + window <= samples.size(); at += window)
            found.push_back(amplitude(samples.subspan(at, window), hertz));
        std::nth_element(found.begin(),
                         found.begin() + static_cast<std::ptrdiff_t>(found.size() / 2),
                         found.end());
        return found[found.size() / 2];
    }

    /// Records until a tone is heard.
    void recordUntil(std::size_t first, double hertz) {
        ASSERT_TRUE(waitUntil([&] { return heard(first, hertz).first >= 0; })) << hertz;
    }

    SoundRecording recording;
    CompositePlaybackEngine engine;
};

TEST_F(Sound, EveryFormatSoundsAndLeavesNothingToTheNext) {
    const std::size_t count = std::size(extensions);
    for (std::size_t i = 0; i < count; ++i) {
        const std::size_t start = recording.size();
        play(toneFile(i));
        recordUntil(start, toneOf(i));
        // By then the old file's last sound, which the server had in hand, is over.
        const std::size_t onset =
            start + static_cast<std::size_t>((heard(start, toneOf(i)).first + 0.1) *
                                             SoundRecording::sampleRate);
        recording.recordMore(0.5);
        EXPECT_NEAR(usualAmplitude(onset, toneOf(i)), toneAmplitude, 0.03) << extensions[i];
        for (std::size_t other = 0; other < count; ++other) {
            if (other == i)
                continue;
            EXPECT_LT(usualAmplitude(onset, toneOf(other)), toneAmplitude / 50) << extensions[i];
            EXPECT_LT(heard(onset, toneOf(other)).first, 0)
                << extensions[other] << " in " << extensions[i];
        }
    }
    engine.stop();
    recording.recordMore(0.3);
    const std::size_t stopped = recording.size();
    recording.recordMore(0.2);
    EXPECT_LT(level(recording.from(stopped)), 1e-5);
}

TEST_F(Sound, PauseIsSilentAndResumeGoesOnFromTheSamePlace) {
    for (const char* name : {"steps.mp3", "steps.flac", "steps.m4a", "steps.caf"}) {
        load(name);
        const std::size_t start = seek(2.9);
        engine.play();
        recordUntil(start, toneOfStep(3));
        recording.recordMore(0.3);
        engine.pause();
        recording.recordMore(0.3);
        const std::size_t paused = recording.size();
        recording.recordMore(0.2);
        EXPECT_LT(level(recording.from(paused)), 1e-5) << name;
        engine.play();
        recordUntil(paused, toneOfStep(4));
        EXPECT_NEAR(sounding(start, toneOfStep(3)), 1, 0.03) << name;
        engine.stop();
    }
}

struct SeekRow {
    const char* file;
    double tolerance; // seconds
};

TEST_F(Sound, ASeekLandsWhereItIsTold) {
    const SeekRow rows[] = {
        {"steps.wav", 0.03},       {"steps.flac", 0.03},
        {"steps.m4a", 0.03},       {"steps.aiff", 0.03},
        {"steps.aif", 0.03},       {"steps.caf", 0.03},
        {"steps-alac.m4a", 0.03},  {"steps-alac.caf", 0.03},
        {"steps-24bit.wav", 0.03}, {"steps.mp3", 0.06},
        {"steps-vbr.mp3", 0.06},   {"steps-cbr-no-header.mp3", 0.06},
        {"steps-cover.mp3", 0.06}, {"steps-vbr-no-header.mp3", 0.06},
        {"steps.aac", 0.06},       {"steps-vbr.aac", 0.06},
        {"steps-mono.aac", 0.06},  {"steps.ogg", 0.06},
        {"steps.oga", 0.06},
    };
    for (const SeekRow& row : rows) {
        const std::size_t start = recording.size();
        play(row.file);
        recordUntil(start, toneOfStep(0));
        // Forth, to the file's first second, and close to its end; playing all the while.
        int previous = 0;
        for (const int step : {12, 0, 18}) {
            const std::size_t from = seek(step + 0.7);
            recordUntil(from, toneOfStep(step + 1));
            EXPECT_NEAR(sounding(from, toneOfStep(step)), 0.3, row.tolerance)
                << row.file << " at " << step;
            // What the server had in hand, and the way to the recording.
            EXPECT_LT(heard(from, toneOfStep(previous)).second, 0.4) << row.file << " at " << step;
            previous = step + 1;
        }
    }
}

TEST_F(Sound, VolumeIsLinearAndTheSameInBothEngines) {
    for (const char* name : {"tone-800.wav", "tone-1100.caf"}) {
        const double hertz = name == std::string_view("tone-800.wav") ? 800 : 1100;
        for (const float volume : {1.0F, 0.5F, 0.0F}) {
            const std::size_t start = recording.size();
            engine.setVolume(volume); // before the load, and while it plays
            if (volume == 1.0F) {
                play(name);
                recordUntil(start, hertz);
            }
            recording.recordMore(0.3);
            const std::size_t steady = recording.size();
            recording.recordMore(0.3);
            EXPECT_NEAR(usualAmplitude(steady, hertz), toneAmplitude * volume, 0.005)
                << name << " at " << volume;
        }
    }
}

// Its program's sound server is killed, so nothing can follow it.
TEST_F(Sound, SurvivesTheSoundServersEnd) {
    play("steps.mp3");
    recording.recordMore(0.3);
    ASSERT_EQ(::kill(qEnvironmentVariableIntValue("TAMSY_SOUND_SERVER_PID"), SIGKILL), 0);
    QTest::qWait(200);
    QElapsedTimer timer;
    timer.start();
    for (const char* name : {"steps.m4a", "steps.flac", "steps.aac", "steps.mp3"}) {
        play(name);
        EXPECT_TRUE(waitUntil([&] { return engine.currentTimePublisher().value() > 0.1; })) << name;
    }
    engine.stop();
    EXPECT_LT(timer.elapsed(), 8000);
}

} // namespace
