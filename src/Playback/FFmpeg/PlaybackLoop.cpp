#include "Playback/FFmpeg/PlaybackLoop.h"

#include <algorithm>
#include <utility>

namespace tamsy {
namespace {

using std::chrono::milliseconds;

/// A device that nobody hears costs wake-ups and keeps the sound card from sleeping; opening it
/// again is quick.
constexpr auto idleLimit = milliseconds(3000);

/// A sound server that is started anew is there again within this time.
constexpr auto lossLimit = milliseconds(2000);
constexpr auto lossPeriod = milliseconds(250);

/// How soon to look again when the device should have taken frames and has not yet.
constexpr auto devicePeriod = milliseconds(10);

PlaybackRequests::Clock::duration durationOf(std::uint64_t frames) {
    return milliseconds(frames * 1000 / mediaSampleRate);
}

} // namespace

PlaybackLoop::PlaybackLoop(PlaybackRequests& requests, RingRenderer& renderer,
                           BackendSource backendSource, Listener listener)
    : requests_(requests),
      renderer_(renderer),
      ring_(renderer.ring()),
      backendSource_(std::move(backendSource)),
      listener_(std::move(listener)) {}

void PlaybackLoop::run() {
    bool running = false;
    while (true) {
        const PlaybackRequest request = requests_.wait(deadline(running));
        if (request.quit)
            return;
        if (request.item != item_)
            changeItem(request);
        else if (decoder_ && request.seek != seek_)
            seek(request);
        else
            settle(request);
        running = decoder_ && request.running;
    }
}

void PlaybackLoop::changeItem(const PlaybackRequest& request) {
    decoder_.reset();
    discardSound();
    item_ = request.item;
    seek_ = 0;
    run_ = 0;
    anchorPosition_ = 0;
    if (request.path.isEmpty())
        return;
    if (MediaBackend* backend = backendSource_())
        decoder_ = backend->openFile(request.path.constData(), requests_.abandoned());
    scanning_ = decoder_ != nullptr;
    report(decoder_ ? PlaybackReport::Kind::Opened : PlaybackReport::Kind::Failed, 0);
}

void PlaybackLoop::seek(const PlaybackRequest& request) {
    pending_ = {};
    const double position = decoder_->seek(request.seekTarget);
    discardSound();
    seek_ = request.seek;
    anchorPosition_ = position;
    decodeOnce();
    report(PlaybackReport::Kind::Sought, position);
}

void PlaybackLoop::discardSound() {
    pending_ = {};
    drained_ = false;
    endReported_ = false;
    filling_ = true;
    ring_.discardUnread();
    if (!output_)
        ring_.skipDiscarded();
    anchorFrame_ = ring_.written();
}

void PlaybackLoop::settle(const PlaybackRequest& request) {
    if (!decoder_) {
        keepOutput(false);
        return;
    }
    fill();
    if (scanning_ && needsNoSound())
        scan();
    const bool hasEnough = hasAllSound() || ring_.unread() >= FrameRing::startFrames;
    if (request.running && request.run != run_ && hasEnough)
        start(request);
    keepOutput(request.running);
    if (request.running && request.run == run_)
        reportEnd();
}

void PlaybackLoop::fill() {
    const std::uint64_t unread = ring_.unread();
    if (unread >= FrameRing::fillTarget)
        filling_ = false;
    else if (unread <= FrameRing::refillLevel)
        filling_ = true;
    if (!needsNoSound())
        decodeOnce();
}

/// Music comes first; what opening left for later is done while there is enough of it.
void PlaybackLoop::scan() {
    const double estimate = decoder_->duration();
    scanning_ = decoder_->scanMore();
    if (!scanning_ && decoder_->duration() != estimate)
        report(PlaybackReport::Kind::Scanned, 0);
}

void PlaybackLoop::decodeOnce() {
    if (pending_.empty() && !drained_) {
        const MediaDecoder::Block block = decoder_->decode();
        pending_ = block.frames;
        drained_ = block.ended;
    }
    pending_ = pending_.subspan(ring_.write(pending_));
    if (hasAllSound())
        ring_.markEnd();
}

void PlaybackLoop::start(const PlaybackRequest& request) {
    // A silent device stood in for a missing one; there may be a real one by now.
    if (output_ && output_->isSilent())
        closeOutput();
    if (!output_) {
        if (MediaBackend* backend = backendSource_())
            output_ = backend->openOutput(renderer_);
    }
    lostSince_.reset();
    if (!output_)
        lostSince_ = Clock::now(); // as if it had vanished at once
    run_ = request.run;
    endReported_ = false;
    if (requests_.letRun(request))
        report(PlaybackReport::Kind::Started, 0);
}

void PlaybackLoop::reportEnd() {
    if (endReported_ || !hasAllSound() || ring_.unread() > 0)
        return;
    endReported_ = true;
    const auto played = static_cast<double>(ring_.written() - anchorFrame_);
    report(PlaybackReport::Kind::Ended, anchorPosition_ + played / mediaSampleRate);
}

/// Opens a lost device anew while it is needed, and closes one that hasn't been for a while.
void PlaybackLoop::keepOutput(bool running) {
    const auto now = Clock::now();
    if (!running) {
        lostSince_.reset();
        if (output_ && now - idleSince_ >= idleLimit)
            closeOutput();
        return;
    }
    idleSince_ = now;
    if (output_ && !output_->isAlive()) {
        closeOutput();
        lostSince_ = now;
    }
    if (lostSince_)
        replaceOutput();
}

void PlaybackLoop::replaceOutput() {
    output_ = backendSource_()->openOutput(renderer_);
    if (output_ && !output_->isSilent()) {
        lostSince_.reset();
        return;
    }
    closeOutput();
    if (Clock::now() - *lostSince_ < lossLimit)
        return;
    lostSince_.reset();
    report(PlaybackReport::Kind::Unheard, 0);
}

void PlaybackLoop::closeOutput() {
    output_.reset();
    ring_.skipDiscarded();
}

PlaybackLoop::Clock::time_point PlaybackLoop::deadline(bool running) const {
    const auto now = Clock::now();
    if (running && lostSince_)
        return now + lossPeriod;
    if (decoder_ && !needsNoSound())
        return pending_.empty() ? now : now + devicePeriod;
    if (decoder_ && scanning_)
        return now;
    if (running && !endReported_) {
        const std::uint64_t kept = hasAllSound() ? 0 : FrameRing::refillLevel;
        const std::uint64_t unread = ring_.unread();
        const auto spare = durationOf(unread > kept ? unread - kept : 0);
        return now + devicePeriod + std::min<Clock::duration>(spare, lossPeriod);
    }
    return output_ ? idleSince_ + idleLimit : Clock::time_point::max();
}

void PlaybackLoop::report(PlaybackReport::Kind kind, double position) const {
    listener_({.kind = kind,
               .item = item_,
               .seek = seek_,
               .position = position,
               .duration = decoder_ ? decoder_->duration() : 0,
               .frame = anchorFrame_});
}

} // namespace tamsy
