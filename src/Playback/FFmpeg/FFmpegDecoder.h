#pragma once

#include "Playback/FFmpeg/FrameConverter.h"
#include "Playback/FFmpeg/MediaBackend.h"
#include "Playback/FFmpeg/PacketReader.h"

#include <cstdint>
#include <memory>
#include <optional>

struct AVCodecContext;
struct AVFrame;
struct AVPacket;

namespace tamsy {

/// Decodes a file on the calling thread.
class FFmpegDecoder : public MediaDecoder {
  public:
    /// Opens the local file at `path` (bytes), or the part `range`; null if the file or its codec
    /// can't be opened. Reads fail once `abandoned` is true; it must outlive the decoder.
    [[nodiscard]] static std::unique_ptr<FFmpegDecoder>
    open(const char* path, const std::atomic<bool>& abandoned, const FileRange& range = {});

    [[nodiscard]] double duration() const override { return file_->duration(); }
    [[nodiscard]] Block decode() override;
    double seek(double seconds) override;
    bool scanMore() override { return file_->scanMore(); }

  private:
    struct CodecDeleter {
        void operator()(AVCodecContext* codec) const;
    };
    struct PacketDeleter {
        void operator()(AVPacket* packet) const;
    };
    struct FrameDeleter {
        void operator()(AVFrame* frame) const;
    };
    using Codec = std::unique_ptr<AVCodecContext, CodecDeleter>;

    FFmpegDecoder(std::unique_ptr<PacketReader> file, Codec codec);
    static Codec openCodec(const PacketReader& file);
    [[nodiscard]] Block decodeBlock();
    [[nodiscard]] Block decodeNext();
    void feed();
    void noteNumber(const AVPacket& packet);
    void restartAt(double seconds);
    [[nodiscard]] bool reach(std::int64_t target);
    [[nodiscard]] double preRoll() const;
    [[nodiscard]] std::int64_t firstTime() const;
    [[nodiscard]] std::int64_t numberOf(const AVFrame& frame) const;

    std::unique_ptr<PacketReader> file_;
    Codec codec_;
    std::unique_ptr<AVPacket, PacketDeleter> packet_;
    std::unique_ptr<AVFrame, FrameDeleter> frame_;
    FrameConverter converter_;
    std::optional<std::int64_t> origin_; // time stamp of the first sound, in the file's time base
    std::optional<std::int64_t> firstSample_;   // its number in the stream
    std::optional<std::int64_t> firstOffset_;   // in bytes, of the file's first packet
    std::optional<std::int64_t> restartOffset_; // in bytes, of the first packet since the last seek
    // Of the latest packet, only used until `position_` is known.
    bool isPositionKnown_ = true;
    std::optional<std::int64_t> blockNumber_, sampleNumber_;
    std::int64_t restart_ = 0;             // the first frame since the last seek, in output frames
    std::optional<std::int64_t> position_; // of the next block, in output frames
    std::optional<Block> pending_;         // decoded by a seek, returned by the next `decode`
};

} // namespace tamsy
