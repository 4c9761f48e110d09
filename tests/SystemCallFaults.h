#pragma once

namespace tamsy {

/// Makes one of the program's next file-system calls fail, on whichever thread. For one test at a
/// time.
class SystemCallFaults {
  public:
    /// The `number`th call from now on fails with `error`; later ones succeed.
    static void arm(int number, int error);

    /// Ends it. Gives the number of calls made meanwhile.
    static int disarm();
};

} // namespace tamsy
