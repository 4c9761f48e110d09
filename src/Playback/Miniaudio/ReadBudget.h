#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>

namespace tamsy {

/// Limits how much the decoders may read on this thread while it lives. A decoder that is lost in a
/// damaged file searches to the end of the file, for seconds or minutes. Once the budget is spent,
/// every read reports the end of the file, so the search ends at once. A budget within another
/// suspends that one. Takes no lock and allocates nothing.
class ReadBudget {
  public:
    /// Allows `bytes`; a read of fewer than `minCost` counts as `minCost`.
    explicit ReadBudget(std::int64_t bytes);
    ~ReadBudget();
    ReadBudget(const ReadBudget&) = delete;
    ReadBudget& operator=(const ReadBudget&) = delete;

    static constexpr std::int64_t minCost = 64;

    /// Whether this thread's budget is spent.
    [[nodiscard]] static bool isSpent() { return left_ <= 0; }

    /// Counts bytes that were read in another way, at least `minCost`.
    static void take(std::size_t bytes);

    /// `std::fopen`; child processes don't inherit the file.
    static std::FILE* open(const char* path, const char* mode);

    /// `std::fread` within this thread's budget; unlimited if there is none.
    static std::size_t read(void* target, std::size_t size, std::size_t count, std::FILE* file);

    /// `std::fgetc` within this thread's budget; each byte counts as one. Only this thread uses
    /// `file`.
    static int readByte(std::FILE* file);

  private:
    static constexpr std::int64_t unlimited = INT64_MAX;
    static thread_local std::int64_t left_;
    const std::int64_t outer_; // what is left of the budget around this one
};

} // namespace tamsy
