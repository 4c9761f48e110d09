#pragma once

namespace tamsy {

/// Keeps the sound systems' own libraries from printing to the program's standard error: on a
/// machine without a card they write dozens of lines while a device is looked for. Once is enough
/// for the whole run; a library that isn't installed is passed over.
void silenceSoundLibraries();

} // namespace tamsy
