#pragma once

#include "Playback/Output/AudioOutput.h"

#include <chrono>
#include <cstddef>
#include <functional>
#include <memory>

namespace tamsy {

/// Owns an audio output and uses it on a thread of its own, so that a slow sound server blocks no
/// other thread. While playing, it replaces an output that is lost, and a silent one as soon as
/// there is a real device. It requests real-time priority for the thread that feeds the device.
///
/// The calls set a wanted state; the thread carries out the latest. Any thread may make them.
class OutputKeeper {
  public:
    /// Opens the default device. If there is none: a silent output if `maySilent`, otherwise null.
    /// Called on the keeper's thread. The renderer outlives the output.
    using Opener =
        std::function<std::unique_ptr<AudioOutput>(AudioRenderer& renderer, bool maySilent)>;

    enum class State {
        Held,
        Starting,
        Sounding,
        Lost,    // none started, or none for two seconds; playback resumes once there is one
        GivenUp, // no device for a minute: held, until the next `start`
    };

    /// Timeouts for callers that must not block. A click on a track holds and closes one output,
    /// opens the next and starts it: together less than 0.3 s.
    static constexpr std::chrono::milliseconds holdTimeout{60}; // closing has the same
    static constexpr std::chrono::milliseconds openTimeout{80};
    static constexpr std::chrono::milliseconds startTimeout{80};

    OutputKeeper(std::shared_ptr<AudioRenderer> renderer, Opener opener);

    /// Closes the output, waiting at most `holdTimeout`. A thread that is stuck in a sound server
    /// is abandoned; it keeps the renderer alive.
    ~OutputKeeper();
    OutputKeeper(const OutputKeeper&) = delete;
    OutputKeeper& operator=(const OutputKeeper&) = delete;

    // None of these waits.

    /// Opens an output, held, unless there is one.
    void open();

    /// Starts the output; opens it first if there is none.
    void start();

    /// Holds the output; buffered frames are heard after the next start, if the device keeps them.
    void hold();

    /// Holds the output and drops its buffered frames.
    void flush();

    /// Closes the output and ends the thread. Call nothing but `wait` and the destructor after
    /// that.
    void end();

    /// Waits until the wanted state is reached, or couldn't be; false if that takes longer than
    /// `limit`.
    [[nodiscard]] bool wait(std::chrono::milliseconds limit) const;

    /// Whether there is an output, real or silent.
    [[nodiscard]] bool isOpen() const;

    [[nodiscard]] State state() const;

    /// About how many frames the output has buffered while it plays: the most that it has pulled at
    /// once. What is heard is behind what has been pulled by that much.
    [[nodiscard]] std::size_t heldFrames() const;

  private:
    struct Shared;
    class Worker;

    template <typename Change>
    void change(Change change);

    const std::shared_ptr<Shared> shared_; // shared with the thread, which may outlive this
};

} // namespace tamsy
