#pragma once

namespace tamsy {

/// The sound server's buffer, in milliseconds. It prevents underruns on a machine that is busy for
/// 80 ms; a longer one would delay the controls and cut off the end of a track.
inline constexpr int serverBufferLength = 180;

/// Sets the environment variables that describe our streams, and their latency, to the libraries of
/// PulseAudio and PipeWire. Variables that the user has set stay. Call this first in `main`:
/// another thread that reads the environment meanwhile may crash.
void describeStreamsToSoundServers();

} // namespace tamsy
