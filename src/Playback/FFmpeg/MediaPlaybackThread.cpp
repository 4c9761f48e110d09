#include "Playback/FFmpeg/MediaPlaybackThread.h"

#include "Platform/Threads/InterfaceReceiver.h"
#include "Playback/FFmpeg/MediaBackendModule.h"
#include "Playback/FFmpeg/RingRenderer.h"

#include <algorithm>
#include <mutex>
#include <utility>
#include <vector>

namespace tamsy {
namespace {

/// A thread that hasn't taken a new item for this long hangs in the previous one.
constexpr auto stuckLimit = std::chrono::milliseconds(200);

/// The maximum number of threads that hang in dead file systems, more than anybody clicks on in
/// vain; then new items wait for one of them.
constexpr std::size_t maxStuckThreads = 32;

constexpr auto endLimit = std::chrono::milliseconds(500);

/// A queue of reports for the interface thread.
class ReportBox {
  public:
    explicit ReportBox(QObject* receiver) : receiver_(receiver) {}

    /// Any thread. `wake` runs on the receiver's thread.
    template <typename Wake>
    void post(const PlaybackReport& report, Wake wake) {
        const std::scoped_lock lock(mutex_);
        reports_.push_back(report);
        if (reports_.size() == 1)
            receiver_.run(wake);
    }

    std::vector<PlaybackReport> take() {
        const std::scoped_lock lock(mutex_);
        return std::exchange(reports_, {});
    }

    /// Nothing is delivered after this.
    void close() { receiver_.close(); }

  private:
    InterfaceReceiver receiver_;
    std::mutex mutex_; // guards everything below
    std::vector<PlaybackReport> reports_;
};

std::unique_ptr<AudioOutput> openOutput(AudioRenderer& renderer, bool maySilent) {
    MediaBackend* backend = loadMediaBackend();
    return backend ? backend->openOutput(renderer, maySilent) : nullptr;
}

} // namespace

/// What both threads share, either of which may end first.
struct MediaPlaybackThread::Shared {
    explicit Shared(QObject* receiver) : reports(receiver) {}

    const std::shared_ptr<RingRenderer> renderer = std::make_shared<RingRenderer>();
    OutputKeeper output{renderer, &openOutput};
    PlaybackRequests requests{output};
    ReportBox reports;
};

MediaPlaybackThread::MediaPlaybackThread() : shared_(std::make_shared<Shared>(this)) {
    stuckTimer_.setSingleShot(true);
    connect(&stuckTimer_, &QTimer::timeout, this, &MediaPlaybackThread::replaceStuckThread);
}

MediaPlaybackThread::~MediaPlaybackThread() {
    shared_->requests.quit();
    shared_->reports.close();
    if (!thread_.joinable())
        return;
    if (finished_.wait_for(endLimit) == std::future_status::ready)
        thread_.join();
    else
        thread_.detach();
}

void MediaPlaybackThread::start() {
    std::promise<void> promise;
    finished_ = promise.get_future();
    thread_ = std::thread([this, shared = shared_, promise = std::move(promise)]() mutable {
        const auto listener = [this, &shared](const PlaybackReport& report) {
            shared->reports.post(report, [this] { deliver(); });
        };
        PlaybackLoop(shared->requests, shared->output, shared->renderer->ring(), &loadMediaBackend,
                     listener)
            .run();
        promise.set_value();
    });
}

void MediaPlaybackThread::deliver() {
    for (const PlaybackReport& report : shared_->reports.take())
        Q_EMIT reported(report);
}

std::uint64_t MediaPlaybackThread::setItem(const QByteArray& path) {
    if (!thread_.joinable())
        start();
    stuckTimer_.start(stuckLimit);
    return shared_->requests.setItem(path);
}

void MediaPlaybackThread::replaceStuckThread() {
    std::erase_if(stuckThreads_, [](const auto& stuck) { return stuck.expired(); });
    if (shared_->requests.isTaken() || stuckThreads_.size() == maxStuckThreads)
        return;
    stuckThreads_.push_back(shared_);
    const std::shared_ptr<Shared> stuck = std::exchange(shared_, std::make_shared<Shared>(this));
    stuck->reports.close();
    thread_.detach();
    shared_->renderer->setVolume(volume_);
    shared_->requests.takeOver(stuck->requests);
    start();
}

void MediaPlaybackThread::prepare(const QByteArray& path) {
    if (!path.isEmpty() && !thread_.joinable())
        start();
    shared_->requests.prepare(path);
}

void MediaPlaybackThread::dropItem(std::uint64_t item) {
    shared_->requests.dropItem(item);
}

void MediaPlaybackThread::setRunning(std::uint64_t item, bool running) {
    shared_->requests.setRunning(item, running);
}

void MediaPlaybackThread::seek(std::uint64_t item, std::uint64_t number, double seconds) {
    shared_->requests.seek(item, number, seconds);
}

void MediaPlaybackThread::setVolume(float volume) {
    volume_ = volume;
    shared_->renderer->setVolume(volume);
}

bool MediaPlaybackThread::hasRunDry() const {
    return shared_->renderer->ring().hasRunDry();
}

std::uint64_t MediaPlaybackThread::heardFrames() const {
    const FrameRing& ring = shared_->renderer->ring();
    const std::uint64_t held = shared_->output.heldFrames();
    const std::uint64_t silent = std::min(held, ring.readPastEnd());
    const std::uint64_t consumed = ring.consumed();
    return consumed - std::min(consumed, held - silent);
}

} // namespace tamsy
