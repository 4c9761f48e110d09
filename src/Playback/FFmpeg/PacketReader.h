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

/// The packets of one file's sound. Pictures and other streams are passed over.
class PacketReader {
  public:
    /// Opens the file or a part of it; nothing if it is no container that we play, holds no sound.
    [[nodiscard]] static std::unique_ptr<PacketReader>
    open(const char* path, const std::atomic<bool>& abandoned, const FileRange& range);

    /// Length in seconds; NaN if the file doesn't tell and can't be measured. An estimate while
    /// `scanMore` has work left.
    [[nodiscard]] double duration() const { return duration_; }

    /// Tells the time stamp of the first sound, in units of `timeBase`. The length of an Ogg stream
    /// is counted from there to its last page, wherever it was cut out.
    void noteStart(std::int64_t timestamp);

    /// Does a piece of the measuring that opening left for later; false once nothing is left.
    bool scanMore();

    [[nodiscard]] const AVCodecParameters& codecParameters() const;
    [[nodiscard]] AVRational timeBase() const;

    /// How far ahead of a target, in seconds, a seek has to aim for the time stamps to be right
    /// there: those of an Ogg file's last page are guesses.
    [[nodiscard]] double seekMargin() const;

    /// Reads the next packet of the sound; false at the end, or when no more can be read.
    [[nodiscard]] bool readPacket(AVPacket& packet);

    /// Goes to a packet at or before `timestamp`, in units of `timeBase`; to the start if that
    /// can't be done.
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
    Format format_; // ahead of the input at the end of life
    AVStream* stream_;
    double duration_ = 0;
    std::unique_ptr<RawAacWalk> walk_; // while it isn't finished
};

} // namespace tamsy
