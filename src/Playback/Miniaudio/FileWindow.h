#pragma once

#include "Playback/Miniaudio/AudioFile.h"

#include <miniaudio.h>

#include <cstdint>

namespace tamsy {

/// A part of an open file, as the only file of a miniaudio file system: a decoder that sees only
/// the audio can't get lost in the tags and junk around it. Reads count towards the thread's
/// `ReadBudget`.
class FileWindow {
  public:
    /// `start` and `end` are offsets in `file`, which must outlive this.
    FileWindow(const AudioFile& file, std::uint64_t start, std::uint64_t end);
    FileWindow(const FileWindow&) = delete;
    FileWindow& operator=(const FileWindow&) = delete;

    /// For `ma_decoder_init_vfs`, which may pass any path.
    [[nodiscard]] ma_vfs* fileSystem() { return &functions_; }

  private:
    struct Functions;

    ma_vfs_callbacks functions_; // first, as miniaudio requires
    const AudioFile* file_;
    std::uint64_t start_;
    std::uint64_t size_;
    std::uint64_t position_ = 0;
};

} // namespace tamsy
