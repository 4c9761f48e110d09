#pragma once

#include "Playback/Output/AudioOutput.h"

#include <chrono>
#include <cstddef>
#include <functional>
#include <memory>

namespace tamsy {

/// Owns an output on a thread of its own, the only one that a sound server can hold up. A lost
/// output is replaced, and a silent one that stands in for none is, as soon as there is a real one.
/// The thread that feeds a device is given real-time priority where the desktop allows it.
///
/// What is asked for is a state: the thread carries out the latest. Any thread may ask.
class OutputKeeper {
  public:
    /// Opens the default device. Where there is none it gives a silent one if `maySilent`, else
    /// nothing. The renderer outlives the output.
    using Opener =
        std::function<std::unique_ptr<AudioOutput>(AudioRenderer& renderer, bool maySilent)>;

    enum class State {
        Held,
        Starting,
        Sounding,
        Lost,    // no device has answered for two seconds; sound goes on by itself once one does
        GivenUp, // none came within a minute: held, as if asked to
    };

    /// How long a caller who must not stand still waits for an output to open or start, and to be
    /// held: together less than 0.3 s.
    static constexpr std::chrono::milliseconds startPatience{150};
    static constexpr std::chrono::milliseconds holdPatience{80};

    OutputKeeper(std::shared_ptr<AudioRenderer> renderer, Opener opener);

    /// Closes the output. A thread that a server holds up is left behind with the renderer.
    ~OutputKeeper();
    OutputKeeper(const OutputKeeper&) = delete;
    OutputKeeper& operator=(const OutputKeeper&) = delete;

    // None of these waits.

    /// Opens the output, held, if there is none.
    void open();

    /// Lets it sound; opens it first if there is none.
    void start();

    /// Holds it; what it has taken is heard after the next start.
    void hold();

    /// Holds it and drops what it has taken.
    void flush();

    /// Waits until all that was asked for has been done; false if it takes longer than `limit`.
    [[nodiscard]] bool wait(std::chrono::milliseconds limit) const;

    /// Whether there is an output, real or silent.
    [[nodiscard]] bool isOpen() const;

    [[nodiscard]] State state() const;

    /// How many frames the output takes at once, and so about how many it holds while it plays:
    /// what is heard is behind what has been pulled by as much.
    [[nodiscard]] std::size_t heldFrames() const;

  private:
    struct Shared;
    class Worker;

    template <typename Change>
    void change(Change change);

    const std::shared_ptr<Shared> shared_; // with the thread, which may outlive this
};

} // namespace tamsy
