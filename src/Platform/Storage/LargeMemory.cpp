#include "Platform/Storage/LargeMemory.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <malloc.h>
#include <new>
#include <sys/mman.h>

namespace tamsy {
namespace {

constexpr int largestRequest = 1 << 30;

// The allocator's own values.
constexpr int defaultMappings = 65'536;
constexpr int defaultTrimThreshold = 131'072;

} // namespace

void preferLargePages(const void* memory, std::size_t size) {
    constexpr std::uintptr_t largePage = 2U << 20U;
    const auto start = reinterpret_cast<std::uintptr_t>(memory); // NOLINT(*-reinterpret-cast)
    const std::uintptr_t first = (start + largePage - 1) / largePage * largePage;
    const std::uintptr_t end = (start + size) / largePage * largePage;
    if (first < end)
        ::madvise(reinterpret_cast<void*>(first), end - first, MADV_HUGEPAGE); // NOLINT
}

/// Pages are aligned for every type; no caller wants more.
void* LargePageResource::do_allocate(std::size_t size, std::size_t /*alignment*/) {
    void* const memory =
        ::mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (memory == MAP_FAILED) // NOLINT(*-cstyle-cast)
        throw std::bad_alloc();
    preferLargePages(memory, size);
    return memory;
}

void LargePageResource::do_deallocate(void* memory, std::size_t size, std::size_t /*alignment*/) {
    ::munmap(memory, size);
}

bool LargePageResource::do_is_equal(const memory_resource& other) const noexcept {
    return dynamic_cast<const LargePageResource*>(&other) != nullptr;
}

LargePageHeap::LargePageHeap(std::size_t size) {
    size = std::min<std::size_t>(size, largestRequest);
    // One block of that size out of the heap makes it grow; freed, it is where the next ones lie.
    ::mallopt(M_TRIM_THRESHOLD, largestRequest);
    ::mallopt(M_MMAP_MAX, 0);
    void* const block = std::malloc(size); // NOLINT(*-no-malloc)
    preferLargePages(block, size);
    std::free(block); // NOLINT(*-no-malloc)
    ::mallopt(M_MMAP_MAX, defaultMappings);
}

LargePageHeap::~LargePageHeap() {
    ::mallopt(M_TRIM_THRESHOLD, defaultTrimThreshold);
}

void returnLargeBlocksToTheSystem() {
    constexpr int megabyte = 1 << 20;
    ::mallopt(M_MMAP_THRESHOLD, megabyte);
}

} // namespace tamsy
