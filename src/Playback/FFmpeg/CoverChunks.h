#pragma once

#include <cstdint>
#include <vector>

namespace tamsy {

class FileInput;

/// The offsets of the names of the MP4 boxes or AIFF chunks that hold covers. The demuxer would
/// read them in full before the sound; under another name it skips them. Takes a few small reads.
/// Empty if the file is damaged or of another format.
[[nodiscard]] std::vector<std::int64_t> findCoverChunks(const FileInput& file);

} // namespace tamsy
