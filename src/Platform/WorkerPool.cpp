#include "Platform/WorkerPool.h"

namespace tamsy {

void WorkerPool::start(std::function<void()> function) {
    const std::scoped_lock lock(mutex_);
    pool_.start([this, function = std::move(function)] {
        { const std::scoped_lock taken(mutex_); }
        function();
    });
}

} // namespace tamsy
