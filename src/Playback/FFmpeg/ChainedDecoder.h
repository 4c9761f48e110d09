#pragma once

#include "Playback/FFmpeg/FFmpegDecoder.h"
#include "Playback/FFmpeg/FileInput.h"
#include "Playback/FFmpeg/MediaBackend.h"

#include <memory>
#include <string>
#include <vector>

namespace tamsy {

/// Decodes the links of a chained file one after the other, as one stream.
class ChainedDecoder : public MediaDecoder {
  public:
    /// Opens each of `ranges`, in order, to get its duration. Those that can't be opened or have no
    /// known duration are skipped; null if none is left.
    [[nodiscard]] static std::unique_ptr<ChainedDecoder> open(const char* path,
                                                              const std::vector<FileRange>& ranges,
                                                              const std::atomic<bool>& abandoned);

    [[nodiscard]] double duration() const override;
    [[nodiscard]] Block decode() override;
    double seek(double seconds) override;

  private:
    struct Link {
        FileRange range;
        double start = 0;  // seconds
        double length = 0; // seconds
    };

    ChainedDecoder(const char* path, const std::atomic<bool>& abandoned)
        : path_(path), abandoned_(abandoned) {}
    [[nodiscard]] bool enter(std::size_t link);

    const std::string path_;
    const std::atomic<bool>& abandoned_;
    std::vector<Link> links_;
    std::size_t current_ = 0;
    std::unique_ptr<FFmpegDecoder> decoder_; // of the current link
};

/// Opens the local file at `path` (bytes), chained or not; null if it can't be played. Reads fail
/// once `abandoned` is true; it must outlive the decoder.
[[nodiscard]] std::unique_ptr<MediaDecoder> openMedia(const char* path,
                                                      const std::atomic<bool>& abandoned);

} // namespace tamsy
