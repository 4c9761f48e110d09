#pragma once

namespace tamsy {

/// How long a sound server's buffer is, in milliseconds: a machine that is busy elsewhere for 80 ms
/// must not be heard. More would be heard as a slow answer, and cut from the end of a track.
inline constexpr int serverBufferLength = 180;

/// Tells the sound servers' own libraries, by their environment variables, what our streams are and
/// how much of them to hold, unless the user has told them something else. To be called before a
/// sound library is loaded, and before there are threads that read the environment.
void describeStreamsToSoundServers();

} // namespace tamsy
