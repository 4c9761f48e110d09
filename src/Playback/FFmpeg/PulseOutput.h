#pragma once

#include "Playback/Output/AudioOutput.h"

#include <pulse/stream.h>
#include <pulse/thread-mainloop.h>

#include <memory>

namespace tamsy {

/// The default output of a PulseAudio server, or of another with its protocol, such as PipeWire.
/// While the stream is held the server keeps the buffered frames; a flush drops them.
class PulseOutput final : public AudioOutput {
  public:
    /// Connects to the server, without a timeout; null if there is none. `renderer` must outlive
    /// the output.
    [[nodiscard]] static std::unique_ptr<PulseOutput> open(AudioRenderer& renderer);
    ~PulseOutput() override;
    PulseOutput(const PulseOutput&) = delete;
    PulseOutput& operator=(const PulseOutput&) = delete;

    [[nodiscard]] bool waitForServer() override;
    [[nodiscard]] bool start() override;
    void hold() override;
    void flush() override;
    [[nodiscard]] bool isAlive() const override;
    [[nodiscard]] bool isSilent() const override { return false; }

  private:
    struct LoopEnd {
        void operator()(pa_threaded_mainloop* loop) const;
    };
    struct ContextEnd {
        void operator()(pa_context* context) const;
    };
    struct StreamEnd {
        void operator()(pa_stream* stream) const;
    };
    class Lock;

    explicit PulseOutput(AudioRenderer& renderer) : renderer_(renderer) {}
    [[nodiscard]] bool connect();
    [[nodiscard]] bool openStream();
    [[nodiscard]] bool isConnected() const;
    [[nodiscard]] bool waitForAnswer();
    static void noteAnswer(pa_stream* stream, int success, void* output);
    void fill(std::size_t bytes);
    static void beginSound(pa_mainloop_api* loop, void* output);
    static void pullFrames(pa_stream* stream, std::size_t bytes, void* output);

    AudioRenderer& renderer_;
    // Everything below is guarded by the loop's lock, which its thread holds during callbacks.
    std::unique_ptr<pa_threaded_mainloop, LoopEnd> loop_;
    std::unique_ptr<pa_context, ContextEnd> context_;
    std::unique_ptr<pa_stream, StreamEnd> stream_;
    bool isRunning_ = false;
    bool hasAnswered_ = false; // the server, to the latest request that was waited for
};

} // namespace tamsy
