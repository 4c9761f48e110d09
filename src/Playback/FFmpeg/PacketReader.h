#pragma once

#include "Playback/FFmpeg/FileInput.h"
#include "Playback/FFmpeg/RawAac.h"

#include <atomic>
#include <cstdint>
#include <memory>

struct AVCodecParameters;
struct AVFormatContext;
struct AVPacket;
struct AVRational;
struct AVStream;

namespace tamsy {

/// Reads the packets of a file's audio stream. Other streams are skipped.
class PacketReader {
  public:
    /// Opens the local file at `path` (bytes), or a part of it; null if its container isn't
    /// supported or has no audio stream. Reads fail once `abandoned` is true; it must outlive this.
    [[nodiscard]] static std::unique_ptr<PacketReader>
    open(const char* path, const std::atomic<bool>& abandoned, const FileRange& range);

    /// The duration in seconds; NaN if it is unknown and can't be measured. An estimate while
    /// `scanMore` has work left.
    [[nodiscard]] double duration() const { return duration_; }

    /// Sets the time stamp of the first sound, in units of `timeBase`. The duration of an Ogg
    /// stream is counted from there to its last page, since it may be cut out of a longer one.
    void noteStart(std::int64_t timestamp);

    /// Does a step of the measuring that opening has left; false once nothing is left.
    bool scanMore();

    [[nodiscard]] const AVCodecParameters& codecParameters() const;
    [[nodiscard]] AVRational timeBase() const;

    /// How far before its target, in seconds, a seek must aim so that time stamps are right at the
    /// target: those in an Ogg file's last page are estimates.
    [[nodiscard]] double seekMargin() const;

    /// Reads the next audio packet; false at the end or after an error.
    [[nodiscard]] bool readPacket(AVPacket& packet);

    /// Seeks to a packet at or before `timestamp`, in units of `timeBase`, or to the start if that
    /// fails.
    void seek(std::int64_t timestamp);

  private:
    struct FormatCloser {
        void operator()(AVFormatContext* context) const;
    };
    using Format = std::unique_ptr<AVFormatContext, FormatCloser>;

    PacketReader(std::unique_ptr<FileInput> input, Format format, AVStream* stream)
        : input_(std::move(input)), format_(std::move(format)), stream_(stream) {}
    static Format openFormat(AVIOContext* input);
    void readDuration();
    [[nodiscard]] double measure();
    [[nodiscard]] bool startWalk(AVPacket& packet);
    [[nodiscard]] double inSeconds(std::int64_t time) const;
    [[nodiscard]] std::int64_t readThrough(AVPacket& packet);

    std::unique_ptr<FileInput> input_;
    Format format_; // destroyed before the input
    AVStream* stream_;
    double duration_ = 0;
    std::unique_ptr<RawAacWalk> walk_; // until it is finished
};

} // namespace tamsy
