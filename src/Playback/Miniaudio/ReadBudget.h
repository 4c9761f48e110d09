#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>

namespace tamsy {

/// Limits what the decoders may read of a file, on this thread and as long as it lives. A decoder
/// that has lost its way in a damaged or lying file searches on to the file's end, for seconds or
/// minutes, on the interface thread or inside the audio callback. Once the budget is spent, every
/// read says "end of file", so the search ends at once. Budgets don't nest. No lock, no allocation.
class ReadBudget {
  public:
    /// `bytes` to be read; a block of few bytes counts as one of `leastCost`.
    explicit ReadBudget(std::int64_t bytes);
    ~ReadBudget();
    ReadBudget(const ReadBudget&) = delete;
    ReadBudget& operator=(const ReadBudget&) = delete;

    static constexpr std::int64_t leastCost = 64;

    /// Whether this thread's budget has run out.
    [[nodiscard]] static bool isSpent() { return left_ <= 0; }

    /// Counts bytes that were read in another way; a block of few counts as one of `leastCost`.
    static void take(std::size_t bytes);

    /// `std::fopen`; child processes don't inherit the file.
    static std::FILE* open(const char* path, const char* mode);

    /// `std::fread` under this thread's budget; without one it reads freely.
    static std::size_t read(void* target, std::size_t size, std::size_t count, std::FILE* file);

    /// `std::fgetc` likewise; each byte counts as one. `file` is this thread's alone.
    static int readByte(std::FILE* file);

  private:
    static constexpr std::int64_t unlimited = INT64_MAX;
    static thread_local std::int64_t left_;
};

} // namespace tamsy
