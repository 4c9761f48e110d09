#pragma once

#include <QProcess>

#include <span>
#include <vector>

namespace tamsy::test {

/// What the private sound server puts out, recorded from its monitor as it plays: one channel of
/// 32-bit float at 48,000 Hz. Running once the constructor has returned.
class SoundRecording {
  public:
    static constexpr double sampleRate = 48'000;

    SoundRecording();
    ~SoundRecording();

    /// How much has been recorded by now, in samples.
    [[nodiscard]] std::size_t size();

    /// Runs the event loop until `seconds` more have been recorded.
    void recordMore(double seconds);

    /// The samples from `first` on.
    [[nodiscard]] std::span<const float> from(std::size_t first);

  private:
    QProcess recorder_;
    std::vector<float> samples_;
    QByteArray rest_; // a part of a sample
};

/// The level of all that sounds; 1 for a full-scale square wave.
[[nodiscard]] double level(std::span<const float> samples);

/// The amplitude of one frequency (Goertzel's algorithm).
[[nodiscard]] double amplitude(std::span<const float> samples, double hertz);

} // namespace tamsy::test
