#pragma once

namespace tamsy {

/// Stops the libraries of ALSA and JACK from printing to standard error: without a sound card they
/// print dozens of lines while a device is searched for. One call is enough; libraries that aren't
/// installed are skipped.
void silenceSoundLibraries();

} // namespace tamsy
