#include "Playback/FFmpeg/PulseOutput.h"

#include "Playback/Output/SoundServerEnvironment.h"

#include <pulse/context.h>
#include <pulse/mainloop-api.h>
#include <pulse/operation.h>
#include <pulse/sample.h>

#include <algorithm>
#include <cstdint>
#include <span>

namespace tamsy {
namespace {

constexpr const char* name = "Tamsy Music";
constexpr auto whatServerThinksFit = static_cast<std::uint32_t>(-1);

template <typename Object>
void wake(Object* /*changed*/, void* loop) {
    pa_threaded_mainloop_signal(static_cast<pa_threaded_mainloop*>(loop), 0);
}

/// Releases an operation without waiting for it.
void forget(pa_operation* operation) {
    if (operation)
        pa_operation_unref(operation);
}

} // namespace

class PulseOutput::Lock {
  public:
    explicit Lock(const PulseOutput& output) : loop_(output.loop_.get()) {
        pa_threaded_mainloop_lock(loop_);
    }
    ~Lock() { pa_threaded_mainloop_unlock(loop_); }
    Lock(const Lock&) = delete;
    Lock& operator=(const Lock&) = delete;

  private:
    pa_threaded_mainloop* loop_;
};

void PulseOutput::LoopEnd::operator()(pa_threaded_mainloop* loop) const {
    pa_threaded_mainloop_free(loop);
}

void PulseOutput::ContextEnd::operator()(pa_context* context) const {
    pa_context_disconnect(context);
    pa_context_unref(context);
}

void PulseOutput::StreamEnd::operator()(pa_stream* stream) const {
    pa_stream_disconnect(stream);
    pa_stream_unref(stream);
}

std::unique_ptr<PulseOutput> PulseOutput::open(AudioRenderer& renderer) {
    std::unique_ptr<PulseOutput> output(new PulseOutput(renderer));
    output->loop_.reset(pa_threaded_mainloop_new());
    if (!output->loop_ || pa_threaded_mainloop_start(output->loop_.get()) < 0)
        return nullptr;
    bool isOpen = false;
    {
        const Lock lock(*output);
        isOpen = output->connect() && output->openStream();
    }
    return isOpen ? std::move(output) : nullptr;
}

PulseOutput::~PulseOutput() {
    if (!loop_)
        return;
    pa_threaded_mainloop_stop(loop_.get());
    stream_.reset();
    context_.reset();
}

bool PulseOutput::connect() {
    pa_threaded_mainloop* loop = loop_.get();
    context_.reset(pa_context_new(pa_threaded_mainloop_get_api(loop), name));
    if (!context_)
        return false;
    pa_context_set_state_callback(context_.get(), &wake<pa_context>, loop);
    if (pa_context_connect(context_.get(), nullptr, PA_CONTEXT_NOAUTOSPAWN, nullptr) < 0)
        return false;
    pa_context_state_t state{};
    while ((state = pa_context_get_state(context_.get())) != PA_CONTEXT_READY) {
        if (!PA_CONTEXT_IS_GOOD(state))
            return false;
        pa_threaded_mainloop_wait(loop);
    }
    return true;
}

bool PulseOutput::openStream() {
    constexpr pa_sample_spec format = {
        .format = PA_SAMPLE_FLOAT32NE, .rate = mediaSampleRate, .channels = 2};
    constexpr std::uint32_t length = serverBufferLength * mediaSampleRate / 1000 *
                                     static_cast<std::uint32_t>(sizeof(StereoFrame));
    constexpr pa_buffer_attr buffer = {.maxlength = whatServerThinksFit,
                                       .tlength = length,
                                       .prebuf = whatServerThinksFit,
                                       .minreq = whatServerThinksFit,
                                       .fragsize = whatServerThinksFit};
    stream_.reset(pa_stream_new(context_.get(), name, &format, nullptr));
    if (!stream_)
        return false;
    pa_stream_set_state_callback(stream_.get(), &wake<pa_stream>, loop_.get());
    pa_stream_set_write_callback(stream_.get(), &pullFrames, this);
    constexpr auto flags =
        static_cast<pa_stream_flags_t>(PA_STREAM_START_CORKED | PA_STREAM_ADJUST_LATENCY);
    if (pa_stream_connect_playback(stream_.get(), nullptr, &buffer, flags, nullptr, nullptr) < 0)
        return false;
    pa_stream_state_t state{};
    while ((state = pa_stream_get_state(stream_.get())) != PA_STREAM_READY) {
        if (!PA_STREAM_IS_GOOD(state))
            return false;
        pa_threaded_mainloop_wait(loop_.get());
    }
    return true;
}

bool PulseOutput::waitForServer() {
    const Lock lock(*this);
    hasAnswered_ = false;
    forget(pa_stream_cork(stream_.get(), 1, &noteAnswer, this)); // it is already
    return waitForAnswer();
}

bool PulseOutput::start() {
    const Lock lock(*this);
    isRunning_ = true;
    hasAnswered_ = false;
    pa_mainloop_api_once(pa_threaded_mainloop_get_api(loop_.get()), &beginSound, this);
    // Wait for the server, since one that doesn't respond plays nothing.
    return waitForAnswer();
}

/// Called with the lock held; false if the server is gone.
bool PulseOutput::waitForAnswer() {
    while (!hasAnswered_ && isConnected())
        pa_threaded_mainloop_wait(loop_.get());
    return isConnected();
}

void PulseOutput::noteAnswer(pa_stream* /*stream*/, int /*success*/, void* output) {
    auto* self = static_cast<PulseOutput*>(output);
    self->hasAnswered_ = true;
    pa_threaded_mainloop_signal(self->loop_.get(), 0);
}

/// Runs on the loop's thread, the only one that pulls frames.
void PulseOutput::beginSound(pa_mainloop_api* /*loop*/, void* output) {
    auto* self = static_cast<PulseOutput*>(output);
    const std::size_t writable = pa_stream_writable_size(self->stream_.get());
    if (writable != static_cast<std::size_t>(-1))
        self->fill(writable);
    forget(pa_stream_cork(self->stream_.get(), 0, &noteAnswer, self));
}

void PulseOutput::hold() {
    const Lock lock(*this);
    isRunning_ = false;
    forget(pa_stream_cork(stream_.get(), 1, nullptr, nullptr));
}

void PulseOutput::flush() {
    const Lock lock(*this);
    forget(pa_stream_flush(stream_.get(), nullptr, nullptr));
}

bool PulseOutput::isAlive() const {
    const Lock lock(*this);
    return isConnected();
}

bool PulseOutput::isConnected() const {
    return pa_context_get_state(context_.get()) == PA_CONTEXT_READY &&
           pa_stream_get_state(stream_.get()) == PA_STREAM_READY;
}

/// The server requests frames for a held stream too; it gets them at the next start.
void PulseOutput::pullFrames(pa_stream* /*stream*/, std::size_t bytes, void* output) {
    auto* self = static_cast<PulseOutput*>(output);
    if (self->isRunning_)
        self->fill(bytes);
}

void PulseOutput::fill(std::size_t bytes) {
    while (bytes >= sizeof(StereoFrame)) {
        void* memory = nullptr;
        std::size_t size = bytes;
        if (pa_stream_begin_write(stream_.get(), &memory, &size) < 0 || !memory)
            return;
        const std::size_t count = std::min(size, bytes) / sizeof(StereoFrame);
        size = count * sizeof(StereoFrame);
        if (count == 0) {
            pa_stream_cancel_write(stream_.get());
            return;
        }
        renderer_.render(std::span(static_cast<StereoFrame*>(memory), count));
        if (pa_stream_write(stream_.get(), memory, size, nullptr, 0, PA_SEEK_RELATIVE) < 0)
            return;
        bytes -= size;
    }
}

} // namespace tamsy
