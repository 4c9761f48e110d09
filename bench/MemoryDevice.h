#pragma once

#include "Playback/FFmpeg/MediaBackend.h"

#include <memory>

namespace tamsy {

/// The output devices of the two engines, each fed with a tone from memory: what playing costs when
/// nothing is opened, decoded or controlled.
class MemoryDevice {
  public:
    virtual ~MemoryDevice() = default;

    /// The first engine's device, started. Nothing if it can't be opened.
    [[nodiscard]] static std::unique_ptr<MemoryDevice> openFirst();

    /// The same of the second engine.
    [[nodiscard]] static std::unique_ptr<MemoryDevice> openSecond();
};

} // namespace tamsy
