#include "Playback/FFmpeg/PlaybackRequests.h"

namespace tamsy {

template <typename Change>
void PlaybackRequests::change(Change change) {
    const std::scoped_lock lock(mutex_);
    change();
    isChanged_ = true;
    changed_.notify_one();
}

void PlaybackRequests::replaceItem(const QByteArray& path) {
    output_.hold();
    abandoned_ = true;
    request_ = {
        .item = request_.item + 1, .path = path, .next = request_.next, .quit = request_.quit};
}

std::uint64_t PlaybackRequests::setItem(const QByteArray& path) {
    std::uint64_t item = 0;
    change([&] {
        replaceItem(path);
        item = request_.item;
    });
    return item;
}

void PlaybackRequests::prepare(const QByteArray& path) {
    change([&] { request_.next = path; });
}

void PlaybackRequests::dropItem(std::uint64_t item) {
    change([&] {
        if (item == request_.item)
            replaceItem({});
    });
}

void PlaybackRequests::setRunning(std::uint64_t item, bool running) {
    change([&] {
        if (item != request_.item)
            return;
        if (!running)
            output_.hold();
        else if (!request_.running)
            ++request_.run;
        request_.running = running;
    });
}

void PlaybackRequests::seek(std::uint64_t item, std::uint64_t number, double seconds) {
    change([&] {
        if (item != request_.item)
            return;
        request_.seek = number;
        request_.seekTarget = seconds;
    });
}

void PlaybackRequests::quit() {
    change([&] {
        output_.end(); // the playback thread may never come back to do it
        abandoned_ = true;
        request_.quit = true;
    });
}

void PlaybackRequests::takeOver(PlaybackRequests& stuck) {
    PlaybackRequest wanted;
    {
        const std::scoped_lock lock(stuck.mutex_);
        wanted = stuck.request_;
    }
    stuck.quit();
    wanted.next.clear(); // it may be what the thread hangs in
    change([&] { request_ = wanted; });
}

bool PlaybackRequests::isTaken() const {
    const std::scoped_lock lock(mutex_);
    return takenItem_ == request_.item;
}

PlaybackRequest PlaybackRequests::wait(Clock::time_point deadline) {
    std::unique_lock lock(mutex_);
    const auto isChanged = [this] { return isChanged_; };
    if (deadline == Clock::time_point::max())
        changed_.wait(lock, isChanged);
    else if (deadline > Clock::now()) // an immediate timeout would still cost two system calls
        changed_.wait_until(lock, deadline, isChanged);
    if (isChanged_)
        abandoned_ = request_.quit;
    isChanged_ = false;
    takenItem_ = request_.item;
    return request_;
}

bool PlaybackRequests::letRun(const PlaybackRequest& request) {
    const std::scoped_lock lock(mutex_);
    const bool holds = request_.item == request.item && request_.running && !request_.quit &&
                       request_.run == request.run;
    if (holds)
        output_.start();
    return holds;
}

} // namespace tamsy
