#include "Playback/CompositePlaybackEngine.h"
#include "Playback/SoundFiles.h"
#include "Playback/SoundRecording.h"
#include "Playback/TestAudio.h"
#include "Playback/Tones.h"

#include <algorithm>
#include <array>
#include <limits>

using namespace tamsy;
using namespace tamsy::test;

namespace {

constexpr std::size_t millisecond = 48;
constexpr std::size_t window = 10 * millisecond; // tells tones 100 Hz apart

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

    /// A tone's amplitude from `first` on, a value a millisecond.
    std::vector<double> course(std::size_t first, double hertz) {
        const auto samples = recording.from(first);
        std::vector<double> found;
        for (std::size_t at = 0; at + window <= samples.size(); at += millisecond)
            found.push_back(amplitude(samples.subspan(at, window), hertz));
        return found;
    }

    /// When a tone is heard for the first and the last time, in seconds from `first`; or below 0.
    std::pair<double, double> heard(std::size_t first, double hertz) {
        std::pair<double, double> places = {-1, -1};
        const auto values = course(first, hertz);
        for (std::size_t i = 0; i < values.size(); ++i) {
            if (values[i] < 0.6 * toneAmplitude)
                continue;
            places.second = static_cast<double>(i) / 1000;
            places.first = places.first < 0 ? places.second : places.first;
        }
        return places;
    }

    /// For how long, from `first` on, a tone is heard in all, in seconds; a gap that a busy machine
    /// leaves doesn't count.
    double sounding(std::size_t first, double hertz) {
        const auto values = course(first, hertz);
        const auto count = std::count_if(values.begin(), values.end(),
                                         [](double value) { return value > 0.5 * toneAmplitude; });
        return static_cast<double>(count) / 1000;
    }

    /// The amplitude of a tone in most of what is heard from `first` on.
    double usualAmplitude(std::size_t first, double hertz) {
        auto values = course(first, hertz);
        const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
        std::nth_element(values.begin(), middle, values.end());
        return *middle;
    }

    /// Records until a tone is heard.
    void recordUntil(std::size_t first, double hertz) {
        ASSERT_TRUE(waitUntil([&] { return heard(first, hertz).first >= 0; })) << hertz;
    }

    /// Plays a file of a second; what is heard from its first sound on.
    std::span<const float> heardOf(const FileURL& url) {
        recording.recordMore(0.3); // the last file's end
        const std::size_t start = recording.size();
        engine.load(url);
        engine.play();
        recording.recordMore(1.2);
        engine.stop();
        const auto heard = recording.from(start);
        const auto first = std::ranges::find_if(heard, [](float value) { return value != 0; });
        return {first, heard.end()};
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
        recording.recordMore(0.1);
        const std::size_t onset = recording.size();
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

TEST_F(Sound, ASeekLandsWhereItIsTold) {
    const std::pair<const char*, double> rows[] = {
        // and how many seconds they may be off
        {"steps.wav steps.flac steps.m4a steps.aiff steps.aif steps.caf steps-alac.m4a "
         "steps-alac.caf steps-24bit.wav",
         0.03},
        {"steps.mp3 steps-vbr.mp3 steps-cbr-no-header.mp3 steps-cover.mp3 steps-vbr-no-header.mp3 "
         "steps.aac steps-vbr.aac steps-mono.aac steps.ogg steps.oga",
         0.06},
    };
    for (const auto& [files, tolerance] : rows) {
        for (const QByteArray& file : QByteArray(files).split(' ')) {
            SCOPED_TRACE(file.constData());
            const std::size_t start = recording.size();
            play(file);
            recordUntil(start, toneOfStep(0));
            // Forth, to the file's first second, and close to its end; playing all the while.
            int previous = 0;
            for (const int step : {12, 0, 18}) {
                const std::size_t from = seek(step + 0.7);
                recordUntil(from, toneOfStep(step + 1));
                EXPECT_NEAR(sounding(from, toneOfStep(step)), 0.3, tolerance) << step;
                // What the server had in hand, and the way to the recording.
                EXPECT_LT(heard(from, toneOfStep(previous)).second, 0.4) << step;
                previous = step + 1;
            }
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

/// A file for each engine with a second of `signal`.
std::array<FileURL, 2> filesOf(const Signal& signal) {
    constexpr int frames = mediaSampleRate;
    const QByteArray wave = fileWith("sound.wav", waveFile(signal, frames, mediaSampleRate));
    const QByteArray other = wave + ".caf";
    ffmpeg("-i " + wave + " -c:a pcm_f32be " + other);
    return {FileURL::fromPath(wave), FileURL::fromPath(other)};
}

TEST_F(Sound, ReachesTheOutputUnchangedFromItsFirstFrame) {
    const Signal sine = tone(997, mediaSampleRate);
    const Signal signal = [&](std::int64_t i) { return sine(i + 20); }; // begins loud
    for (const FileURL& url : filesOf(signal)) {
        const auto heard = heardOf(url);
        ASSERT_GT(heard.size(), 4800U) << url.absoluteString().toStdString();
        for (std::size_t i = 0; i < 4800; ++i)
            ASSERT_EQ(heard[i], static_cast<float>(signal(static_cast<std::int64_t>(i))))
                << i << " in " << url.absoluteString().toStdString();
    }
}

TEST_F(Sound, SilencesDamageAndStaysWithinFullScale) {
    constexpr std::array damage = {std::numeric_limits<double>::quiet_NaN(), 3e38, -4.5};
    const auto damageAt = [&](std::int64_t i) {
        const auto at = static_cast<std::size_t>(i % 1000);
        return at >= 500 && at < 500 + damage.size() ? &damage[at - 500] : nullptr;
    };
    const Signal sine = tone(997, mediaSampleRate);
    const Signal signal = [&](std::int64_t i) {
        return damageAt(i) != nullptr ? *damageAt(i) : 3 * sine(i + 20);
    };
    for (const FileURL& url : filesOf(signal)) {
        const auto heard = heardOf(url);
        ASSERT_GT(heard.size(), 4800U) << url.absoluteString().toStdString();
        for (std::int64_t i = 0; i < 4800; ++i) {
            const double expected = damageAt(i) != nullptr ? 0 : std::clamp(signal(i), -1.0, 1.0);
            ASSERT_EQ(heard[static_cast<std::size_t>(i)], static_cast<float>(expected))
                << i << " in " << url.absoluteString().toStdString();
        }
    }
}

} // namespace
