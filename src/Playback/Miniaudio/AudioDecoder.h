#pragma once

#include "Playback/Resampling/DownMix.h"
#include "Playback/Resampling/Resampler.h"

#include "Playback/Miniaudio/AudioFile.h"
#include "Playback/Miniaudio/FileWindow.h"
#include "Playback/Miniaudio/MpegAudioScan.h"

#include <miniaudio.h>

#include <atomic>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <vector>

namespace tamsy {

class FileURL;

/// An open file, decoded to stereo 32-bit float at 48,000 Hz. One thread at a time. No call takes
/// longer than the file's size justifies: a decoder that is lost in a damaged file is stopped. If
/// it stops before the end, the fallback decoder continues.
class AudioDecoder {
  public:
    static constexpr ma_format format = ma_format_f32;
    static constexpr ma_uint32 channels = 2;
    static constexpr ma_uint32 sampleRate = mediaSampleRate;

    AudioDecoder() : AudioDecoder(neverAbandoned) {}

    /// Once `isAbandoned` is true, calls end soon and their results don't matter. It must outlive
    /// the decoder.
    explicit AudioDecoder(const std::atomic<bool>& isAbandoned) : isAbandoned_(isAbandoned) {}
    ~AudioDecoder() = default;
    AudioDecoder(const AudioDecoder&) = delete;
    AudioDecoder& operator=(const AudioDecoder&) = delete;

    /// Opens `url`, once. After a failure nothing else may be called.
    [[nodiscard]] ma_result open(const FileURL& url);

    /// The duration in seconds; 0 if unknown. May read the whole file, so call it once.
    [[nodiscard]] double length();

    /// Whether opening has left work for later, and the part known so far doesn't reach `seconds`.
    [[nodiscard]] bool isUnscanned(double seconds) const;

    /// Does a step of the work left by opening; false once nothing is left. Each step may correct
    /// the duration.
    bool scanMore();

    /// Seeks to a position in seconds, not negative, truncated to a frame. `read` then gives
    /// exactly the frames that it would have given there without the seek. After a failure `read`
    /// continues where it was, or gives nothing more.
    [[nodiscard]] ma_result seek(double seconds);

    /// Decodes into `output`. Fewer frames than `count` mean the end, or a failure that counts as
    /// the end.
    [[nodiscard]] ma_uint64 read(void* output, ma_uint64 count);

    /// The decoder's position in the file in seconds, which after a seek may differ from the
    /// target; 0 if unknown. Takes no lock and allocates nothing.
    [[nodiscard]] double place();

  private:
    struct Closer {
        void operator()(ma_decoder* decoder) const;
    };
    using Decoder = std::unique_ptr<ma_decoder, Closer>;

    [[nodiscard]] bool startScan();
    void takeScan();
    ma_result openMpeg();
    ma_result openVorbis();
    ma_result openAs(ma_encoding_format encoding, std::int64_t headerBytes = 0);
    ma_result openByFallback();
    template <typename Initialise>
    ma_result openWith(Initialise initialise);
    [[nodiscard]] bool checkFlac();
    void resume(std::uint64_t frame);
    [[nodiscard]] bool fallBack(std::uint64_t frame);
    [[nodiscard]] bool endsEarly(std::uint64_t frame);
    ma_result seekToFrame(std::uint64_t frame);
    [[nodiscard]] bool startConversion();
    void restartConversion(std::uint64_t skippedFrames);
    void convertMore();

    enum class Kind { Other, Mpeg, Flac, Fallback };

    static constexpr std::atomic<bool> neverAbandoned = false;
    const std::atomic<bool>& isAbandoned_;
    QByteArray path_;
    std::unique_ptr<AudioFile> file_; // outlives its readers below
    std::unique_ptr<FileWindow> window_;
    Decoder decoder_; // outputs the file's own sample rate and channels
    Kind kind_ = Kind::Other;
    std::optional<DownMix> mix_;
    std::optional<Resampler> resampler_;
    std::vector<float> decoded_;                // a block in the file's format
    std::span<const StereoFrame> converted_;    // not yet read
    std::uint64_t skippedFrames_ = 0;           // to drop from what is converted next
    bool hasEnded_ = false;                     // nothing more is decoded
    bool wasCutShort_ = false;                  // the last seek spent its budget
    bool isCut_ = false;                        // the decoder returned fewer frames than requested
    std::uint64_t nextFrame_ = 0;               // of the output
    bool isLost_ = false;                       // nothing more can be decoded
    std::int64_t seekingBudget_ = 0;            // bytes
    std::unique_ptr<MpegAudioScanner> scanner_; // until the scan is finished
    std::size_t boundPoints_ = 0;               // seek points that the decoder has
    std::optional<double> scannedLength_;       // in seconds, if the header has none
    bool isFlacUnchecked_ = false;              // its header's length may be wrong
    bool mayFallBack_ = false;                  // the fallback decoder may support the file
};

} // namespace tamsy
