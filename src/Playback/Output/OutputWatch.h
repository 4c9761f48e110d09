#pragma once

namespace tamsy {

/// Tells from a playing device's position whether anybody takes its sound. A sound server that dies
/// says nothing: it just asks for no more.
class OutputWatch {
  public:
    enum class Advice {
        None,    // sound flows
        Replace, // the output is lost, another may be there
        GiveUp,  // none came in time: playing on makes no sense
    };

    /// To be asked regularly while the device plays: `position` is the output produced, `elapsed`
    /// the time since the last question, both in seconds. Counted in questions, not by a clock, so
    /// that a machine that slept has lost nothing.
    [[nodiscard]] Advice look(double position, double elapsed);

    /// Forgets everything: the device was started or moved.
    void reset() { *this = OutputWatch(); }

  private:
    double position_ = -1;
    double still_ = 0; // seconds without a move
    bool isLost_ = false;
    double lostPosition_ = 0; // where it was lost
    double lostFor_ = 0;      // seconds
};

} // namespace tamsy
