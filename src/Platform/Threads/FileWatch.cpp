#include "Platform/Threads/FileWatch.h"

namespace tamsy {
namespace {

thread_local FileWatch* current = nullptr;

std::int64_t now() {
    return std::chrono::nanoseconds(std::chrono::steady_clock::now().time_since_epoch()).count();
}

} // namespace

FileWatch::Attachment::Attachment(FileWatch& watch) {
    current = &watch;
}

FileWatch::Attachment::~Attachment() {
    current = nullptr;
}

FileWatch::Call::Call() : watch_(current) {
    if (watch_ != nullptr)
        watch_->callStart_.store(now(), std::memory_order_relaxed);
}

FileWatch::Call::~Call() {
    if (watch_ == nullptr)
        return;
    watch_->callStart_.store(0, std::memory_order_relaxed);
    if (!watch_->hasSlot() && watch_->reclaimSlot_)
        watch_->reclaimSlot_();
}

std::chrono::nanoseconds FileWatch::callDuration() const {
    const std::int64_t start = callStart_.load(std::memory_order_relaxed);
    return std::chrono::nanoseconds(start == 0 ? 0 : now() - start);
}

bool FileWatch::isCurrentAbandoned() {
    return current != nullptr && current->isAbandoned_.load(std::memory_order_relaxed);
}

} // namespace tamsy
