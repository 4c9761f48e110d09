#pragma once

#include <miniaudio.h>

// What miniaudio's PulseAudio backend knows and doesn't tell. Other backends' devices are left
// alone.

namespace tamsy {

/// Makes the server throw away what it holds of a stopped device's sound, at the latest when the
/// device is started again.
void flushPulseStream(ma_device& device);

/// Whether the device's connection or stream has ended: the library goes on as if it hadn't. Never
/// waits.
[[nodiscard]] bool hasLostPulseServer(const ma_device& device);

} // namespace tamsy
