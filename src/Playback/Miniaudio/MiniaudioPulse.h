#pragma once

#include <miniaudio.h>

// Access to miniaudio's PulseAudio backend beyond its own interface. With other backends nothing is
// done, or lost.

namespace tamsy {

/// Makes the server drop the frames that it has buffered for a stopped device, before it plays any
/// new ones. Never waits.
void flushPulseStream(ma_device& device);

/// Waits until the server of a stopped device responds; false if it is gone.
[[nodiscard]] bool waitForPulseServer(ma_device& device);

/// Whether the device's connection or stream has ended, which miniaudio doesn't check. Never waits.
[[nodiscard]] bool hasLostPulseServer(const ma_device& device);

} // namespace tamsy
