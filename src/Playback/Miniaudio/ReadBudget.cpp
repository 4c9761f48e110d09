#include "Playback/Miniaudio/ReadBudget.h"

#include <algorithm>
#include <string>
#include <utility>

namespace tamsy {

thread_local std::int64_t ReadBudget::left_ = unlimited;

ReadBudget::ReadBudget(std::int64_t bytes) : outer_(std::exchange(left_, bytes)) {}

ReadBudget::~ReadBudget() {
    left_ = outer_;
}

std::FILE* ReadBudget::open(const char* path, const char* mode) {
    return std::fopen(path, (std::string(mode) + 'e').c_str());
}

std::size_t ReadBudget::read(void* target, std::size_t size, std::size_t count, std::FILE* file) {
    if (left_ <= 0)
        return 0;
    const std::size_t got = std::fread(target, size, count, file);
    take(got * size);
    return got;
}

void ReadBudget::take(std::size_t bytes) {
    if (left_ != unlimited)
        left_ -= std::max(static_cast<std::int64_t>(bytes), minCost);
}

int ReadBudget::readByte(std::FILE* file) {
    if (left_ <= 0)
        return EOF;
    if (left_ != unlimited)
        --left_;
    return ::getc_unlocked(file);
}

} // namespace tamsy
