#pragma once

#include "Platform/Threads/OperationQueue.h"

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <vector>

namespace tamsy {

/// Runs `questions` to file systems concurrently, on at most 16 threads, and waits for all of them,
/// but at most for `limit` in total. A question without an answer by then gives nothing; its thread
/// is left behind and may use only what the question owns. Any thread.
template <typename T>
[[nodiscard]] std::vector<std::optional<T>>
answersWithin(std::chrono::milliseconds limit, std::vector<std::function<T()>> questions) {
    struct Answers {
        std::mutex mutex; // guards what follows
        std::condition_variable changed;
        std::vector<std::optional<T>> values;
        std::size_t missing = 0;
    };
    constexpr std::size_t mostThreads = 16;
    const auto answers = std::make_shared<Answers>();
    answers->values.resize(questions.size());
    answers->missing = questions.size();
    OperationQueue queue(mostThreads, "questions");
    for (std::size_t i = 0; i < questions.size(); ++i)
        queue.add(std::make_shared<Operation>([answers, i, ask = std::move(questions[i])] {
            T value = ask();
            const std::scoped_lock lock(answers->mutex);
            answers->values[i] = std::move(value);
            --answers->missing;
            answers->changed.notify_all();
        }));
    std::vector<std::optional<T>> values;
    {
        std::unique_lock lock(answers->mutex);
        answers->changed.wait_for(lock, limit, [&] { return answers->missing == 0; });
        values = answers->values;
    }
    queue.endWithin(std::chrono::milliseconds(0));
    return values;
}

} // namespace tamsy
