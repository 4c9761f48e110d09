#include "Playback/Miniaudio/DecodeAhead.h"

#include "Platform/Threads/ReadPriority.h"
#include "Playback/Miniaudio/AudioDecoder.h"
#include "Playback/Output/FrameRing.h"
#include "Utils/FileURL.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <system_error>
#include <thread>
#include <utility>

namespace tamsy {
namespace {

using Clock = std::chrono::steady_clock;

/// How long the interface thread waits for a file, out of 50 ms for everything that a click does.
constexpr auto fileTimeout = std::chrono::milliseconds(40);

/// The maximum number of threads, including those that hang in a dead file system: more files of it
/// than anybody clicks on in vain.
constexpr int maxWorkers = 32;
std::atomic<int> workerCount = 0;

/// Frames decoded at once: a new request waits for at most these.
constexpr std::size_t blockFrames = 4096;

/// The interval for checking a ring buffer that a device empties.
constexpr auto shortestSleep = std::chrono::milliseconds(20);

struct Request {
    std::uint64_t number = 0; // the seek's number
    double target = 0;        // seconds
    double returnTo = 0;      // seconds, used if the target can't be reached
};

} // namespace

struct DecodeAhead::Shared {
    FrameRing ring;
    std::atomic<bool> isPending = true; // the ring buffer's frames aren't the wanted ones yet
    std::atomic<double> length = 0;
    std::atomic<double> endPosition = 0;
    std::atomic<bool> hasRequest = false;  // that the thread hasn't taken; changed under the lock
    std::atomic<bool> isAbandoned = false; // changed under the lock

    mutable std::mutex mutex; // guards everything below; never locked by the device's thread
    mutable std::condition_variable changed;
    Request request;
    std::optional<ma_result> opened;
    std::uint64_t soughtNumber = 0;
    ma_result sought = MA_SUCCESS;
    bool isRunning = false; // whether a device reads

    template <typename Change>
    void change(Change change) {
        const std::scoped_lock lock(mutex);
        change();
        changed.notify_all();
    }

    [[nodiscard]] std::optional<ma_result> soughtResult() const {
        return soughtNumber == request.number ? std::optional(sought) : std::nullopt;
    }
};

/// The work of the file's thread.
class DecodeAhead::Worker {
  public:
    explicit Worker(std::shared_ptr<Shared> shared)
        : shared_(std::move(shared)), decoder_(shared_->isAbandoned) {}
    ~Worker() { --workerCount; }
    Worker(const Worker&) = delete;
    Worker& operator=(const Worker&) = delete;

    void run(const FileURL& url) {
        if (!open(url))
            return;
        while (const std::optional<Request> request = waitForWork()) {
            if (request->number != soughtNumber_)
                seek(*request);
            else
                work();
        }
    }

  private:
    bool open(const FileURL& url) {
        const MusicRead reading;
        const ma_result result = decoder_.open(url);
        if (result == MA_SUCCESS) {
            shared_->length = decoder_.length();
            isScanning_ = decoder_.isUnscanned(shared_->length);
            fillToStart();
        }
        shared_->change([&] {
            shared_->opened = result;
            if (result == MA_SUCCESS && shared_->request.number == 0)
                shared_->isPending.store(false, std::memory_order_release);
        });
        return result == MA_SUCCESS;
    }

    void seek(const Request& request) {
        const MusicRead reading;
        soughtNumber_ = request.number;
        // Some decoders reject a position past the end. Seeking to the end instead makes a slider
        // at the far right end the track with all of them.
        while (decoder_.isUnscanned(request.target) && !shared_->hasRequest) {
            isScanning_ = decoder_.scanMore();
            shared_->length = decoder_.length();
        }
        const double length = shared_->length;
        ma_result result =
            decoder_.seek(length > 0 ? std::min(request.target, length) : request.target);
        shared_->ring.discardUnread();
        pending_ = {};
        hasEnded_ = false;
        if (result != MA_SUCCESS && decoder_.seek(request.returnTo) != MA_SUCCESS)
            markEnd();
        fillToStart();
        shared_->change([&] {
            shared_->soughtNumber = request.number;
            shared_->sought = result;
            if (shared_->request.number == request.number)
                shared_->isPending.store(false, std::memory_order_release);
        });
    }

    void fillToStart() {
        isFilling_ = true;
        while (!hasEnded_ && !shared_->hasRequest && !shared_->ring.canStart() && decodeBlock()) {
        }
    }

    void fill() {
        const std::uint64_t unread = shared_->ring.unread();
        if (unread + blockFrames > FrameRing::fillTarget)
            isFilling_ = false;
        else if (unread <= FrameRing::refillLevel)
            isFilling_ = true;
        if (!isFilling_ || hasEnded_)
            return;
        const MusicRead reading;
        static_cast<void>(decodeBlock());
    }

    /// Decodes first; work left by opening is done while the ring buffer is full enough.
    void work() {
        fill();
        if (!isScanning_ || (isFilling_ && !hasEnded_))
            return;
        isScanning_ = decoder_.scanMore();
        if (!hasEnded_)
            shared_->length = decoder_.length();
    }

    /// False if there is no space: seeks have discarded frames that the device hasn't dropped yet.
    [[nodiscard]] bool decodeBlock() {
        if (pending_.empty()) {
            const auto count = decoder_.read(block_.data(), block_.size());
            pending_ = std::span(block_).first(static_cast<std::size_t>(count));
            followLength();
            if (count == 0)
                markEnd();
        }
        pending_ = pending_.subspan(shared_->ring.write(pending_));
        return pending_.empty();
    }

    /// Raises the duration if the file is longer than its header says.
    void followLength() {
        constexpr double tolerance = 0.05; // seconds; headers round
        const double position = decoder_.place();
        if (shared_->length > 0 && position > shared_->length + tolerance)
            shared_->length = position;
    }

    void markEnd() {
        // The duration must be right before the position reaches it.
        while (isScanning_ && !shared_->hasRequest) {
            isScanning_ = decoder_.scanMore();
            shared_->length = decoder_.length();
        }
        hasEnded_ = true;
        shared_->endPosition = decoder_.place();
        shared_->ring.markEnd();
    }

    /// Waits until there is work; nothing once the file isn't wanted.
    std::optional<Request> waitForWork() {
        std::unique_lock lock(shared_->mutex);
        const bool wasRunning = shared_->isRunning;
        const auto isWanted = [this, wasRunning] {
            return shared_->isAbandoned || shared_->isRunning != wasRunning ||
                   shared_->request.number != soughtNumber_;
        };
        if (!pending_.empty()) {
            shared_->changed.wait_for(lock, shortestSleep, isWanted);
        } else if ((isFilling_ && !hasEnded_) || isScanning_) {
            // No wait: there is space for more frames.
        } else if (hasEnded_ || !wasRunning) {
            shared_->changed.wait(lock, isWanted);
        } else {
            shared_->changed.wait_for(lock, timeToRefill(), isWanted);
        }
        if (shared_->isAbandoned)
            return std::nullopt;
        shared_->hasRequest = false;
        return shared_->request;
    }

    [[nodiscard]] std::chrono::milliseconds timeToRefill() const {
        const std::uint64_t unread = shared_->ring.unread();
        const std::uint64_t spare = unread - std::min(unread, FrameRing::refillLevel);
        return std::chrono::milliseconds(spare * 1000 / mediaSampleRate) + shortestSleep;
    }

    const std::shared_ptr<Shared> shared_;
    AudioDecoder decoder_;
    std::array<StereoFrame, blockFrames> block_{};
    std::span<const StereoFrame> pending_; // of the block, not yet in the ring buffer
    std::uint64_t soughtNumber_ = 0;
    bool isFilling_ = true;
    bool isScanning_ = false;
    bool hasEnded_ = false;
};

DecodeAhead::DecodeAhead(const FileURL& url) : shared_(std::make_shared<Shared>()) {
    if (++workerCount > maxWorkers) {
        --workerCount;
        shared_->opened = MA_TOO_MANY_OPEN_FILES;
        return;
    }
    auto worker = std::make_unique<Worker>(shared_); // decrements the count itself
    try {
        std::thread([worker = std::move(worker), url] { worker->run(url); }).detach();
    } catch (const std::system_error&) {
        shared_->opened = MA_OUT_OF_MEMORY;
    }
}

DecodeAhead::~DecodeAhead() {
    shared_->change([this] {
        shared_->hasRequest = true;
        shared_->isAbandoned = true;
    });
}

std::optional<ma_result> DecodeAhead::opened() const {
    const std::scoped_lock lock(shared_->mutex);
    return shared_->opened;
}

std::optional<ma_result> DecodeAhead::waitUntilOpened() const {
    std::unique_lock lock(shared_->mutex);
    shared_->changed.wait_for(lock, fileTimeout, [this] { return shared_->opened.has_value(); });
    return shared_->opened;
}

void DecodeAhead::seek(double seconds, double returnTo, bool isDeviceStopped) {
    shared_->isPending.store(true, std::memory_order_release);
    if (isDeviceStopped)
        shared_->ring.skipWritten();
    shared_->change([&] {
        shared_->hasRequest = true;
        shared_->request = {shared_->request.number + 1, seconds, returnTo};
    });
}

std::optional<ma_result> DecodeAhead::sought() const {
    const std::scoped_lock lock(shared_->mutex);
    return shared_->soughtResult();
}

std::optional<ma_result> DecodeAhead::waitUntilSought() const {
    std::unique_lock lock(shared_->mutex);
    shared_->changed.wait_for(lock, fileTimeout,
                              [this] { return shared_->soughtResult().has_value(); });
    return shared_->soughtResult();
}

bool DecodeAhead::isWaiting() const {
    return shared_->isPending.load(std::memory_order_acquire) ||
           (shared_->ring.hasRunDry() && !shared_->ring.canStart());
}

void DecodeAhead::setRunning(bool isRunning) {
    shared_->change([&] { shared_->isRunning = isRunning; });
}

double DecodeAhead::length() const {
    return shared_->length;
}

void DecodeAhead::setLength(double seconds) {
    shared_->length = seconds;
}

std::size_t DecodeAhead::read(std::span<StereoFrame> frames) noexcept {
    return shared_->isPending.load(std::memory_order_acquire) ? 0 : shared_->ring.read(frames);
}

bool DecodeAhead::hasEnded() const noexcept {
    return !shared_->isPending.load(std::memory_order_acquire) && shared_->ring.isAtEnd();
}

double DecodeAhead::endPosition() const noexcept {
    return shared_->endPosition;
}

} // namespace tamsy
