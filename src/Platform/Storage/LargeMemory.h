#pragma once

#include <cstddef>
#include <memory_resource>

namespace tamsy {

/// Asks the system to back `size` bytes at `memory`, fresh from the allocator, with large pages. A
/// buffer of many megabytes that is filled once and given back costs its page faults and little
/// else: in a virtual machine they take ten times as long as the filling. Where the system has no
/// large pages nothing changes.
void preferLargePages(const void* memory, std::size_t size);

/// Memory straight from the system, in large pages where a request is large, and straight back to
/// it. To be used through a pool or a monotonic buffer. Any thread.
class LargePageResource : public std::pmr::memory_resource {
    void* do_allocate(std::size_t size, std::size_t alignment) override;
    void do_deallocate(void* memory, std::size_t size, std::size_t alignment) override;
    [[nodiscard]] bool do_is_equal(const memory_resource& other) const noexcept override;
};

/// Lets the many small blocks that are allocated while it lives, and stay, lie in large pages:
/// about `size` bytes of them. The allocator would grow its heap by a few pages at a time. For the
/// main thread, whose heap it is; what wasn't needed goes back afterwards.
class LargePageHeap {
  public:
    explicit LargePageHeap(std::size_t size);
    ~LargePageHeap();
    LargePageHeap(const LargePageHeap&) = delete;
    LargePageHeap& operator=(const LargePageHeap&) = delete;
};

/// Makes the allocator give every freed block of a megabyte or more back to the system at once.
/// Left to itself it moves its limit up to the largest block it saw, and a document that was read
/// once stays resident. To be called before the threads start.
void returnLargeBlocksToTheSystem();

} // namespace tamsy
