#include "Playback/Output/OutputKeeper.h"

#include "Playback/Output/RealtimePriority.h"

#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <mutex>
#include <optional>
#include <system_error>
#include <thread>
#include <utility>

#include <unistd.h>

namespace tamsy {
namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

/// An output counts as lost after this time, in which a sound server can restart.
constexpr auto lossLimit = 2s;

/// How long to look for another output; a listener who is still there acts sooner.
constexpr auto searchLimit = 60s;

/// The intervals for checking an output and replacing a lost one, and for replacing a silent one.
constexpr auto checkInterval = 250ms;
constexpr auto silentInterval = 500ms;
constexpr auto lateSilentInterval = 5s; // after the first minute

/// The time from a start to the first check; the device has pulled frames by then.
constexpr auto firstCheck = 30ms;

/// The maximum number of threads, including those that are stuck in a sound server.
constexpr int maxWorkers = 8;
std::atomic<int> workerCount = 0;

/// Passes frames on and notes which thread feeds the device.
class Feed final : public AudioRenderer {
  public:
    explicit Feed(std::shared_ptr<AudioRenderer> source) : source_(std::move(source)) {}

    void render(std::span<StereoFrame> frames) noexcept override {
        if (thread_.load(std::memory_order_relaxed) == 0)
            thread_.store(::gettid(), std::memory_order_relaxed);
        if (frames.size() > held_.load(std::memory_order_relaxed))
            held_.store(frames.size(), std::memory_order_relaxed);
        source_->render(frames);
    }

    /// 0 until frames have been pulled.
    [[nodiscard]] pid_t thread() const { return thread_.load(std::memory_order_relaxed); }
    void forgetThread() { thread_.store(0, std::memory_order_relaxed); }

    /// The most frames that have been pulled at once.
    [[nodiscard]] std::size_t held() const { return held_.load(std::memory_order_relaxed); }
    void forgetHeld() { held_.store(0, std::memory_order_relaxed); }

  private:
    const std::shared_ptr<AudioRenderer> source_;
    std::atomic<pid_t> thread_ = 0;
    std::atomic<std::size_t> held_ = 0;
};

/// The wanted state.
struct Wanted {
    std::uint64_t number = 0; // counts the changes
    std::uint64_t starts = 0;
    std::uint64_t flushes = 0;
    bool isRunning = false;
    bool isOpen = false;
    bool quit = false;
};

} // namespace

struct OutputKeeper::Shared {
    Shared(std::shared_ptr<AudioRenderer> renderer, Opener howToOpen)
        : feed(std::move(renderer)), opener(std::move(howToOpen)) {}

    Feed feed;
    const Opener opener;
    mutable std::mutex mutex; // guards everything below
    mutable std::condition_variable changed;
    Wanted wanted;
    std::uint64_t done = 0; // the number of the latest change that was carried out
    State state = State::Held;
    Clock::time_point startedAt; // when the latest start was requested
    bool isOpen = false;
    bool hasEnded = false; // whether the thread has
};

/// The work of the keeper's thread.
class OutputKeeper::Worker {
  public:
    explicit Worker(std::shared_ptr<Shared> shared) : shared_(std::move(shared)) {}
    ~Worker() {
        output_.reset();
        --workerCount;
        const std::scoped_lock lock(shared_->mutex);
        shared_->hasEnded = true;
        shared_->changed.notify_all();
    }
    Worker(const Worker&) = delete;
    Worker& operator=(const Worker&) = delete;

    void run() {
        while (const std::optional<Wanted> wanted = waitForWork()) {
            carryOut(*wanted);
            publish(wanted->number);
        }
        holdOutput(); // closing a running device may wait for its server
    }

  private:
    std::optional<Wanted> waitForWork() {
        std::unique_lock lock(shared_->mutex);
        const auto isChanged = [this] {
            return shared_->wanted.quit || shared_->wanted.number != shared_->done;
        };
        if (nextCheck_)
            shared_->changed.wait_until(lock, *nextCheck_, isChanged);
        else
            shared_->changed.wait(lock, isChanged);
        return shared_->wanted.quit ? std::nullopt : std::optional(shared_->wanted);
    }

    void carryOut(const Wanted& wanted) {
        if (wanted.flushes != flushes_)
            flushOutput(wanted.flushes);
        if (wanted.isRunning && wanted.starts != starts_)
            startOutput(wanted.starts);
        else if (wanted.isRunning)
            checkOutput();
        else
            holdOutput();
        if (wanted.isOpen && !output_ && !wanted.isRunning)
            openOutput(true);
    }

    void publish(std::uint64_t number) {
        const std::scoped_lock lock(shared_->mutex);
        shared_->done = number;
        shared_->isOpen = output_ != nullptr;
        if (number == shared_->wanted.number)
            shared_->state = state();
        shared_->changed.notify_all();
    }

    [[nodiscard]] State state() const {
        if (!isRunning_)
            return hasGivenUp_ ? State::GivenUp : State::Held;
        const bool isLost = lostSince_ && Clock::now() - *lostSince_ >= lossLimit;
        return isLost ? State::Lost : State::Sounding;
    }

    void openOutput(bool maySilent) {
        output_ = shared_->opener(shared_->feed, maySilent);
        shared_->feed.forgetHeld();
    }

    void flushOutput(std::uint64_t number) {
        holdOutput();
        if (output_)
            output_->flush();
        flushes_ = number;
    }

    void holdOutput() {
        if (isRunning_ && output_)
            output_->hold();
        isRunning_ = false;
        lostSince_.reset();
        nextCheck_.reset();
    }

    void startOutput(std::uint64_t number) {
        starts_ = number;
        isRunning_ = true;
        hasGivenUp_ = false;
        lostSince_.reset();
        startedAt_ = Clock::now();
        if (output_ && !output_->isAlive())
            output_.reset();
        // If it doesn't start, its server is gone; a new output uses the restarted server or
        // another device.
        for (int attempt = 0; attempt < 2; ++attempt) {
            if (!output_)
                openOutput(true);
            if (begin())
                return;
        }
        lostSince_ = Clock::now() - lossLimit; // it never ran, so it counts as lost at once
        nextCheck_ = Clock::now() + checkInterval;
    }

    bool begin() {
        shared_->feed.forgetThread();
        nextCheck_ = Clock::now() + firstCheck;
        // A server that hangs would later play the frames it already has, wanted or not.
        if (output_ && output_->waitForServer() && (isSuperseded() || output_->start()))
            return true;
        output_.reset();
        return false;
    }

    /// Whether the latest start is no longer wanted.
    [[nodiscard]] bool isSuperseded() const {
        const std::scoped_lock lock(shared_->mutex);
        const Wanted& wanted = shared_->wanted;
        return wanted.quit || !wanted.isRunning || wanted.starts != starts_;
    }

    void checkOutput() {
        if (!isRunning_ || Clock::now() < nextCheck_.value_or(Clock::time_point::max()))
            return;
        nextCheck_ = Clock::now() + checkInterval;
        if (!output_ || !output_->isAlive())
            replaceLostOutput();
        else if (output_->isSilent())
            replaceSilentOutput();
        else
            requestPriority();
    }

    void replaceLostOutput() {
        output_.reset();
        if (!lostSince_)
            lostSince_ = Clock::now();
        openOutput(false);
        if (begin()) {
            lostSince_.reset();
            return;
        }
        nextCheck_ = Clock::now() + checkInterval;
        if (Clock::now() - *lostSince_ < searchLimit)
            return;
        hasGivenUp_ = true;
        holdOutput();
    }

    void replaceSilentOutput() {
        std::unique_ptr<AudioOutput> real = shared_->opener(shared_->feed, false);
        const bool isEarly = Clock::now() - startedAt_ < searchLimit;
        nextCheck_ =
            Clock::now() + (isEarly ? Clock::duration(silentInterval) : lateSilentInterval);
        if (!real)
            return;
        output_->hold(); // only one thread may pull frames at a time
        output_ = std::move(real);
        shared_->feed.forgetHeld();
        begin();
    }

    void requestPriority() {
        const pid_t thread = shared_->feed.thread();
        if (thread != 0 && std::exchange(prioritised_, thread) != thread)
            RealtimePriority::request(thread);
    }

    const std::shared_ptr<Shared> shared_;
    std::unique_ptr<AudioOutput> output_;
    std::uint64_t starts_ = 0;
    std::uint64_t flushes_ = 0;
    bool isRunning_ = false;
    bool hasGivenUp_ = false;
    pid_t prioritised_ = 0; // the thread that priority was requested for
    Clock::time_point startedAt_;
    std::optional<Clock::time_point> lostSince_;
    std::optional<Clock::time_point> nextCheck_; // only while running
};

OutputKeeper::OutputKeeper(std::shared_ptr<AudioRenderer> renderer, Opener opener)
    : shared_(std::make_shared<Shared>(std::move(renderer), std::move(opener))) {
    ++workerCount;
    auto worker = std::make_unique<Worker>(shared_); // decrements the count itself
    if (workerCount > maxWorkers)
        return;
    try {
        std::thread([worker = std::move(worker)]() mutable {
            worker->run();
            worker.reset();
        }).detach();
    } catch (const std::system_error&) {
        // Without a thread nothing is opened, and a start ends as lost.
    }
}

OutputKeeper::~OutputKeeper() {
    std::unique_lock lock(shared_->mutex);
    const bool mayAnswer = shared_->wanted.quit || shared_->done == shared_->wanted.number;
    lock.unlock();
    end();
    lock.lock();
    if (mayAnswer)
        shared_->changed.wait_for(lock, holdTimeout, [this] { return shared_->hasEnded; });
}

template <typename Change>
void OutputKeeper::change(Change change) {
    const std::scoped_lock lock(shared_->mutex);
    change(*shared_);
    ++shared_->wanted.number;
    shared_->changed.notify_all();
}

void OutputKeeper::open() {
    change([](Shared& shared) { shared.wanted.isOpen = true; });
}

void OutputKeeper::start() {
    change([](Shared& shared) {
        shared.wanted.isRunning = true;
        ++shared.wanted.starts;
        shared.state = State::Starting;
        shared.startedAt = Clock::now();
    });
}

void OutputKeeper::hold() {
    change([](Shared& shared) {
        shared.wanted.isRunning = false;
        shared.state = State::Held;
    });
}

void OutputKeeper::flush() {
    change([](Shared& shared) {
        shared.wanted.isRunning = false;
        ++shared.wanted.flushes;
        shared.state = State::Held;
    });
}

void OutputKeeper::end() {
    change([](Shared& shared) {
        shared.wanted.isRunning = false;
        shared.wanted.quit = true;
        shared.state = State::Held;
    });
}

bool OutputKeeper::wait(std::chrono::milliseconds limit) const {
    std::unique_lock lock(shared_->mutex);
    return shared_->changed.wait_for(lock, limit,
                                     [this] { return shared_->done == shared_->wanted.number; });
}

bool OutputKeeper::isOpen() const {
    const std::scoped_lock lock(shared_->mutex);
    return shared_->isOpen;
}

OutputKeeper::State OutputKeeper::state() const {
    const std::scoped_lock lock(shared_->mutex);
    const bool isLate = Clock::now() - shared_->startedAt >= lossLimit;
    return shared_->state == State::Starting && isLate ? State::Lost : shared_->state;
}

std::size_t OutputKeeper::heldFrames() const {
    return shared_->feed.held();
}

} // namespace tamsy
