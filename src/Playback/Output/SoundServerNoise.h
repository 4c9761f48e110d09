#pragma once

namespace tamsy {

/// Stops the sound systems' libraries from printing to standard error: on a machine without a sound
/// card they write dozens of lines while a device is searched for. One call is enough; libraries
/// that aren't installed are skipped.
void silenceSoundLibraries();

} // namespace tamsy
