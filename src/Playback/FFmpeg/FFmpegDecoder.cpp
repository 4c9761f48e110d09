#include "Playback/FFmpeg/FFmpegDecoder.h"

#include "Formats/FlacFrame.h"

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavutil/common.h>
#include <libavutil/mathematics.h>
}

#include <algorithm>
#include <cmath>
#include <span>
#include <utility>

namespace tamsy {
namespace {

/// The maximum number of packets per call, so that a call stays short in a damaged file.
constexpr int packetsPerCall = 32;

/// Frames per packet if the file doesn't say, as in the most common codec.
constexpr int usualPacketFrames = 1024;

} // namespace

void FFmpegDecoder::CodecDeleter::operator()(AVCodecContext* codec) const {
    avcodec_free_context(&codec);
}

void FFmpegDecoder::PacketDeleter::operator()(AVPacket* packet) const {
    av_packet_free(&packet);
}

void FFmpegDecoder::FrameDeleter::operator()(AVFrame* frame) const {
    av_frame_free(&frame);
}

FFmpegDecoder::FFmpegDecoder(std::unique_ptr<PacketReader> file, Codec codec)
    : file_(std::move(file)),
      codec_(std::move(codec)),
      packet_(av_packet_alloc()),
      frame_(av_frame_alloc()) {}

FFmpegDecoder::Codec FFmpegDecoder::openCodec(const PacketReader& file) {
    const AVCodec* decoder = avcodec_find_decoder(file.codecParameters().codec_id);
    Codec codec(decoder ? avcodec_alloc_context3(decoder) : nullptr);
    if (!codec || avcodec_parameters_to_context(codec.get(), &file.codecParameters()) < 0)
        return nullptr;
    codec->pkt_timebase = file.timeBase();
    codec->thread_count = 1;
    if (avcodec_open2(codec.get(), decoder, nullptr) < 0)
        return nullptr;
    return codec;
}

std::unique_ptr<FFmpegDecoder>
FFmpegDecoder::open(const char* path, const std::atomic<bool>& abandoned, const FileRange& range) {
    std::unique_ptr<PacketReader> file = PacketReader::open(path, abandoned, range);
    Codec codec = file ? openCodec(*file) : nullptr;
    if (!codec)
        return nullptr;
    std::unique_ptr<FFmpegDecoder> decoder(new FFmpegDecoder(std::move(file), std::move(codec)));
    if (!decoder->packet_ || !decoder->frame_)
        return nullptr;
    // The first sound proves that the codec accepts the data; its time stamp is the file's origin.
    for (int call = 0; call < 4 && !decoder->pending_; ++call) {
        const Block block = decoder->decodeNext();
        if (!block.frames.empty() || block.ended)
            decoder->pending_ = block;
    }
    if (!decoder->pending_ || decoder->pending_->frames.empty())
        return nullptr;
    return decoder;
}

MediaDecoder::Block FFmpegDecoder::decode() {
    if (pending_)
        return *std::exchange(pending_, std::nullopt);
    return decodeNext();
}

MediaDecoder::Block FFmpegDecoder::decodeNext() {
    const Block block = decodeBlock();
    if (position_)
        *position_ += static_cast<std::int64_t>(block.frames.size());
    return block;
}

MediaDecoder::Block FFmpegDecoder::decodeBlock() {
    for (int packets = 0; packets < packetsPerCall; ++packets) {
        const int result = avcodec_receive_frame(codec_.get(), frame_.get());
        if (result == AVERROR_EOF)
            return {converter_.drain(), true};
        if (result == AVERROR(EAGAIN)) {
            feed();
            continue;
        }
        if (result < 0)
            continue;
        if (!origin_) {
            origin_ = frame_->best_effort_timestamp;
            file_->noteStart(firstTime());
        }
        if (!position_ && !isPositionKnown_)
            continue;
        if (!position_) {
            restart_ = converter_.restart(*frame_, numberOf(*frame_));
            position_ = restart_;
        }
        const auto frames = converter_.convert(*frame_);
        if (!frames.empty())
            return {frames, false};
    }
    return {};
}

void FFmpegDecoder::feed() {
    // A packet that the decoder rejects is damaged; the next may be intact.
    if (file_->readPacket(*packet_)) {
        if (!position_)
            noteNumber(*packet_);
        avcodec_send_packet(codec_.get(), packet_.get());
        av_packet_unref(packet_.get());
    } else {
        avcodec_send_packet(codec_.get(), nullptr);
    }
}

/// After a seek the demuxer estimates the times of FLAC in Ogg, and of ADPCM from a rounded byte
/// rate; the packets have exact positions. Speex packets don't, so decoding waits for the next
/// page, whose time is in the file.
void FFmpegDecoder::noteNumber(const AVPacket& packet) {
    const AVCodecParameters& parameters = file_->codecParameters();
    const auto bytesOf = [](const std::uint8_t* data, int size) {
        return std::as_bytes(std::span(data, static_cast<std::size_t>(std::max(0, size))));
    };
    sampleNumber_.reset();
    blockNumber_.reset();
    isPositionKnown_ = true;
    switch (parameters.codec_id) {
    case AV_CODEC_ID_FLAC:
        sampleNumber_ = firstFlacSample(bytesOf(packet.data, packet.size),
                                        bytesOf(parameters.extradata, parameters.extradata_size));
        if (!firstSample_)
            firstSample_ = sampleNumber_;
        break;
    case AV_CODEC_ID_ADPCM_MS:
    case AV_CODEC_ID_ADPCM_IMA_WAV:
        if (packet.pos < 0 || parameters.block_align <= 0)
            break;
        firstOffset_ = firstOffset_.value_or(packet.pos);
        blockNumber_ = (packet.pos - *firstOffset_) / parameters.block_align;
        break;
    case AV_CODEC_ID_SPEEX:
        firstOffset_ = firstOffset_.value_or(packet.pos);
        restartOffset_ = restartOffset_.value_or(packet.pos);
        isPositionKnown_ = packet.pos == *firstOffset_ || packet.pos != *restartOffset_;
        break;
    default:
        break;
    }
}

/// The number of the frame's first sample in the stream.
std::int64_t FFmpegDecoder::numberOf(const AVFrame& frame) const {
    if (blockNumber_)
        return *blockNumber_ * frame.nb_samples;
    if (sampleNumber_)
        return *sampleNumber_ - firstSample_.value_or(0);
    constexpr std::int64_t largest = std::int64_t{1} << 45U; // six years at 192 kHz
    const std::int64_t time = frame.best_effort_timestamp;
    if (time == AV_NOPTS_VALUE)
        return 0;
    const AVRational sampleTime{1, std::max(1, frame.sample_rate)};
    return std::clamp(av_rescale_q(av_sat_sub64(time, firstTime()), file_->timeBase(), sampleTime),
                      -largest, largest);
}

std::int64_t FFmpegDecoder::firstTime() const {
    return origin_.value_or(AV_NOPTS_VALUE) == AV_NOPTS_VALUE ? 0 : *origin_;
}

double FFmpegDecoder::preRoll() const {
    const AVCodecParameters& parameters = file_->codecParameters();
    const int rate = std::max(1, parameters.sample_rate);
    const int packet = parameters.frame_size > 0 ? parameters.frame_size : usualPacketFrames;
    return std::max(2.0 * packet, static_cast<double>(parameters.seek_preroll)) / rate +
           static_cast<double>(converter_.seekLead()) / mediaSampleRate + file_->seekMargin();
}

void FFmpegDecoder::restartAt(double seconds) {
    constexpr double limit = 1e18; // a hostile file may tell any duration
    const double units = std::clamp(seconds / av_q2d(file_->timeBase()), -limit, limit);
    file_->seek(av_sat_add64(firstTime(), static_cast<std::int64_t>(units)));
    // Flushing doesn't reset the Speex decoder.
    if (codec_->codec_id == AV_CODEC_ID_SPEEX)
        codec_ = openCodec(*file_);
    else
        avcodec_flush_buffers(codec_.get());
    position_.reset();
    pending_.reset();
    restartOffset_.reset();
}

/// Decodes up to `target` and keeps what follows as the next block. False if decoding started after
/// the target.
bool FFmpegDecoder::reach(std::int64_t target) {
    Block block;
    do {
        block = decodeNext();
    } while (!block.ended && position_.value_or(0) <= target);
    const auto size = static_cast<std::int64_t>(block.frames.size());
    const std::int64_t start = position_.value_or(0) - size;
    const std::int64_t skipped = std::clamp<std::int64_t>(target - start, 0, size);
    pending_ = {block.frames.subspan(static_cast<std::size_t>(skipped)), block.ended};
    return size == 0 || restart_ == 0 || restart_ + converter_.seekLead() <= target;
}

double FFmpegDecoder::seek(double seconds) {
    const double length = file_->duration();
    const double bounded = std::isfinite(length) ? std::min(seconds, length) : seconds;
    const std::int64_t target = std::llround(std::max(0.0, seconds) * mediaSampleRate);
    // A codec needs the packets before the target, and an index may be too coarse to find them.
    for (const double lead : {preRoll(), preRoll() + 1, bounded + preRoll()}) {
        restartAt(bounded - lead);
        if (reach(target))
            break;
    }
    if (!position_)
        return bounded;
    const std::int64_t next = *position_ - static_cast<std::int64_t>(pending_->frames.size());
    return static_cast<double>(next) / mediaSampleRate;
}

} // namespace tamsy
