#include "MonitorListener.h"

#include <QProcess>

#include <algorithm>
#include <cstring>
#include <vector>

namespace tamsy {
namespace {

constexpr auto silence = std::chrono::milliseconds(250);

/// A partial sample at the end of a block counts as silence.
bool sounds(const QByteArray& bytes) {
    std::vector<float> samples(static_cast<std::size_t>(bytes.size()) / sizeof(float));
    std::memcpy(samples.data(), bytes.constData(), samples.size() * sizeof(float));
    return std::ranges::any_of(samples, &MonitorListener::isSound);
}

} // namespace

MonitorListener::MonitorListener() : thread_([this] { listen(); }) {
    while (!isListening_)
        std::this_thread::yield();
}

MonitorListener::~MonitorListener() {
    isEnding_ = true;
    thread_.join();
}

void MonitorListener::listen() {
    QProcess recorder;
    recorder.start(QStringLiteral("parec"),
                   QStringLiteral("--device=tamsy.monitor --format=float32le --rate=48000 "
                                  "--channels=1 --latency-msec=2 --raw")
                       .split(u' '));
    while (!isEnding_ && recorder.waitForReadyRead()) {
        const Clock::rep now = Clock::now().time_since_epoch().count();
        isListening_ = true;
        if (!sounds(recorder.readAll()))
            continue;
        last_ = now;
        Clock::rep none = 0;
        first_.compare_exchange_strong(none, now);
    }
    isListening_ = true; // or silence would never be reported
    recorder.kill();
    recorder.waitForFinished();
}

void MonitorListener::waitForSilence() {
    const auto start = Clock::now();
    const auto lastSound = [this] { return Clock::time_point(Clock::duration(last_)); };
    while (Clock::now() - std::max(start, lastSound()) < silence)
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    first_ = 0;
}

std::optional<MonitorListener::Clock::time_point> MonitorListener::firstSound() const {
    const Clock::rep first = first_;
    return first ? std::optional(Clock::time_point(Clock::duration(first))) : std::nullopt;
}

} // namespace tamsy
