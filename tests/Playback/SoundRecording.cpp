#include "Playback/SoundRecording.h"

#include "Playback/TestAudio.h"

#include <cmath>
#include <cstring>
#include <numbers>

namespace tamsy::test {

SoundRecording::SoundRecording() {
    recorder_.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    recorder_.start(u"parec"_qs,
                    QStringLiteral("--device=tamsy.monitor --format=float32le --rate=48000 "
                                   "--channels=1 --latency-msec=10 --raw")
                        .split(u' '));
    recordMore(0.05);
}

SoundRecording::~SoundRecording() {
    recorder_.kill();
    recorder_.waitForFinished();
}

std::size_t SoundRecording::size() {
    rest_ += recorder_.readAllStandardOutput();
    const auto count = static_cast<std::size_t>(rest_.size()) / sizeof(float);
    const std::size_t before = samples_.size();
    samples_.resize(before + count);
    if (count == 0)
        return before; // there may be no storage to copy to yet
    const std::size_t bytes = count * sizeof(float);
    std::memcpy(samples_.data() + before, rest_.constData(), bytes);
    rest_ = rest_.sliced(static_cast<qsizetype>(bytes));
    return samples_.size();
}

void SoundRecording::recordMore(double seconds) {
    const std::size_t target = size() + static_cast<std::size_t>(seconds * sampleRate);
    ASSERT_TRUE(waitUntil([&] { return size() >= target; }, 10'000)) << "nothing is recorded";
}

std::span<const float> SoundRecording::from(std::size_t first) {
    const std::size_t count = size(); // may move the samples
    return std::span(samples_).subspan(std::min(first, count));
}

double level(std::span<const float> samples) {
    double sum = 0;
    for (const double sample : samples)
        sum += sample * sample;
    return std::sqrt(sum / static_cast<double>(samples.size()));
}

double amplitude(std::span<const float> samples, double hertz) {
    const double step = 2 * std::numbers::pi * hertz / SoundRecording::sampleRate;
    const double turn = 2 * std::cos(step);
    double last = 0;
    double before = 0;
    for (const double sample : samples)
        before = std::exchange(last, sample + turn * last - before);
    const double power = last * last + before * before - turn * last * before;
    return 2 * std::sqrt(power) / static_cast<double>(samples.size());
}

} // namespace tamsy::test
