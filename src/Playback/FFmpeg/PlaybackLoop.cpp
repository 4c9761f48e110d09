#include "Playback/FFmpeg/PlaybackLoop.h"

#include "Platform/Threads/ReadPriority.h"

#include <algorithm>
#include <utility>

namespace tamsy {
namespace {

using std::chrono::milliseconds;

/// The interval for checking an output that plays, and a lost one.
constexpr auto outputInterval = milliseconds(250);

/// How soon to check again if the device should have taken frames but hasn't.
constexpr auto devicePeriod = milliseconds(10);

PlaybackRequests::Clock::duration durationOf(std::uint64_t frames) {
    return milliseconds(frames * 1000 / mediaSampleRate);
}

} // namespace

PlaybackLoop::PlaybackLoop(PlaybackRequests& requests, OutputKeeper& output, FrameRing& ring,
                           BackendSource backendSource, Listener listener)
    : requests_(requests),
      output_(output),
      ring_(ring),
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
        prepareNext(request);
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
    if (request.path == nextPath_)
        decoder_ = std::move(next_);
    if (!decoder_)
        decoder_ = openFile(request.path);
    scanning_ = decoder_ != nullptr;
    report(decoder_ ? PlaybackReport::Kind::Opened : PlaybackReport::Kind::Failed, 0);
}

std::unique_ptr<MediaDecoder> PlaybackLoop::openFile(const QByteArray& path) {
    MediaBackend* backend = backendSource_();
    const MusicRead reading;
    return backend ? backend->openFile(path.constData(), requests_.abandoned()) : nullptr;
}

/// Opens the next file once the current one is decoded, so that one that doesn't respond can't
/// interrupt the sound.
void PlaybackLoop::prepareNext(const PlaybackRequest& request) {
    if (request.next == nextPath_ || (decoder_ && (scanning_ || !hasAllSound())))
        return;
    nextPath_ = request.next;
    next_ = nextPath_.isEmpty() ? nullptr : openFile(nextPath_);
}

void PlaybackLoop::seek(const PlaybackRequest& request) {
    const MusicRead reading;
    pending_ = {};
    const double position = decoder_->seek(request.seekTarget);
    discardSound();
    seek_ = request.seek;
    anchorPosition_ = position;
    decodeOnce();
    report(PlaybackReport::Kind::Sought, position);
}

/// Drops all frames, including those that the output has buffered, so that the next ones are heard
/// at once.
void PlaybackLoop::discardSound() {
    pending_ = {};
    drained_ = false;
    endReported_ = false;
    filling_ = true;
    run_ = 0;
    output_.flush();
    // An output that isn't held in time still reads from the ring buffer and drops the discarded
    // frames itself. It may flush some of the new ones, too.
    const bool isHeld = output_.wait(OutputKeeper::holdTimeout);
    ring_.discardUnread();
    if (isHeld)
        ring_.skipDiscarded();
    anchorFrame_ = ring_.written();
}

void PlaybackLoop::settle(const PlaybackRequest& request) {
    if (!decoder_)
        return;
    fill();
    if (scanning_ && needsNoSound())
        scan();
    const bool hasEnough = hasAllSound() || ring_.unread() >= FrameRing::startFrames;
    if (request.running && request.run != run_ && hasEnough)
        start(request);
    if (request.running && request.run == run_) {
        reportOutput();
        reportEnd();
    }
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

/// Decodes first; work left by opening is done while the ring buffer is full enough.
void PlaybackLoop::scan() {
    const double estimate = decoder_->duration();
    scanning_ = decoder_->scanMore();
    if (!scanning_ && decoder_->duration() != estimate)
        report(PlaybackReport::Kind::Scanned, 0);
}

void PlaybackLoop::decodeOnce() {
    if (pending_.empty() && !drained_) {
        const MusicRead reading;
        const MediaDecoder::Block block = decoder_->decode();
        pending_ = block.frames;
        drained_ = block.ended;
    }
    pending_ = pending_.subspan(ring_.write(pending_));
    if (hasAllSound())
        ring_.markEnd();
}

void PlaybackLoop::start(const PlaybackRequest& request) {
    if (!requests_.letRun(request))
        return;
    run_ = request.run;
    endReported_ = false;
    seen_ = OutputKeeper::State::Starting;
}

void PlaybackLoop::reportOutput() {
    const OutputKeeper::State state = output_.state();
    if (std::exchange(seen_, state) == state)
        return;
    if (state == OutputKeeper::State::Sounding)
        report(PlaybackReport::Kind::Started, 0);
    else if (state == OutputKeeper::State::Lost)
        report(PlaybackReport::Kind::Lost, 0);
    else if (state == OutputKeeper::State::GivenUp)
        report(PlaybackReport::Kind::Unheard, 0);
}

void PlaybackLoop::reportEnd() {
    const bool isHeard = seen_ == OutputKeeper::State::Sounding;
    if (endReported_ || !isHeard || !hasAllSound() || ring_.unread() > 0)
        return;
    // The output may still have the last frames, which a stop would drop.
    if (ring_.readPastEnd() < output_.heldFrames())
        return;
    endReported_ = true;
    const auto played = static_cast<double>(ring_.written() - anchorFrame_);
    report(PlaybackReport::Kind::Ended, anchorPosition_ + played / mediaSampleRate);
}

PlaybackLoop::Clock::time_point PlaybackLoop::deadline(bool running) const {
    const auto now = Clock::now();
    if (decoder_ && !needsNoSound())
        return pending_.empty() ? now : now + devicePeriod;
    if (decoder_ && scanning_)
        return now;
    if (!running)
        return Clock::time_point::max();
    if (seen_ != OutputKeeper::State::Sounding)
        return now + (seen_ == OutputKeeper::State::Lost ? outputInterval : devicePeriod);
    if (endReported_)
        return now + outputInterval;
    const std::uint64_t kept = hasAllSound() ? 0 : FrameRing::refillLevel;
    const std::uint64_t unread = ring_.unread();
    const auto spare = durationOf(unread > kept ? unread - kept : 0);
    return now + devicePeriod + std::min<Clock::duration>(spare, outputInterval);
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
