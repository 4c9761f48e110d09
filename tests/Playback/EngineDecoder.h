#pragma once

#include "Playback/Resampling/StereoFrame.h"

#include <cstddef>
#include <memory>
#include <span>
#include <vector>

namespace tamsy {
class FileURL;
}

namespace tamsy::test {

/// A file as the engine that its extension picks decodes it, without a device.
class EngineDecoder {
  public:
    /// Null if the engine refuses the file.
    [[nodiscard]] static std::unique_ptr<EngineDecoder> open(const FileURL& url);
    [[nodiscard]] static std::unique_ptr<EngineDecoder> openWithFirst(const FileURL& url);
    [[nodiscard]] static std::unique_ptr<EngineDecoder> openWithSecond(const FileURL& url);
    virtual ~EngineDecoder() = default;

    /// In seconds, as it shows once the file has played for a moment; 0 if it isn't known.
    [[nodiscard]] virtual double length() = 0;

    /// Whether it succeeded.
    [[nodiscard]] virtual bool seek(double seconds) = 0;

    /// Gives the frames read, fewer than asked for at the end.
    [[nodiscard]] virtual std::size_t read(std::span<StereoFrame> frames) = 0;

    /// The next `count` frames, or fewer at the end.
    [[nodiscard]] std::vector<StereoFrame> take(std::size_t count = SIZE_MAX);
};

} // namespace tamsy::test
