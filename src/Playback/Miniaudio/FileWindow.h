#pragma once

#include "Playback/Miniaudio/AudioFile.h"

#include <miniaudio.h>

#include <cstdint>

namespace tamsy {

/// A part of an open file as a file system of miniaudio's, which has no other file: a decoder that
/// is given only the sound can't lose its way in the tags and junk around it. Reads are held to
/// the thread's `ReadBudget`.
class FileWindow {
  public:
    /// From `start` to `end` in bytes of `file`, which must outlive this.
    FileWindow(const AudioFile& file, std::uint64_t start, std::uint64_t end);
    FileWindow(const FileWindow&) = delete;
    FileWindow& operator=(const FileWindow&) = delete;

    /// For `ma_decoder_init_vfs`, with any name.
    [[nodiscard]] ma_vfs* fileSystem() { return &functions_; }

  private:
    struct Functions;

    ma_vfs_callbacks functions_; // first: miniaudio takes the window's address for this
    const AudioFile* file_;
    std::uint64_t start_;
    std::uint64_t size_;
    std::uint64_t position_ = 0;
};

} // namespace tamsy
