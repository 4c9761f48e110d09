#include "Playback/FFmpeg/PacketReader.h"

#include "Playback/FFmpeg/CoverChunks.h"
#include "Playback/FFmpeg/OggLinks.h"

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavcodec/packet.h>
#include <libavformat/avformat.h>
#include <libavutil/common.h>
#include <libavutil/dict.h>
#include <libavutil/mem.h>
}

#include <algorithm>
#include <chrono>
#include <limits>
#include <span>
#include <string_view>

namespace tamsy {
namespace {

/// The supported containers, whatever the file's extension. Playlists and manifests, which refer to
/// other files, aren't among them.
constexpr const char* containers = "mov,aac,loas,aiff,caf,wav,w64,flac,ogg,mp3,ac3,amr,au";

/// Each container is recognisable at its start (after a tag, which is skipped), so other files are
/// rejected after this many bytes.
constexpr int probeSize = 64 * 1024;

/// Measuring by packets reads the whole file, two seconds for an hour of sound. A file larger than
/// this, in bytes, about ten hours, plays with a duration estimated from its bit rate.
constexpr std::int64_t measureLimit = 512LL << 20U;

/// How many bytes may be read to open a file, to seek in it, and for one packet. Enough for large
/// pictures and damage; limits a search through a hole of gigabytes.
constexpr std::int64_t openingBudget = 24LL << 20U;
constexpr std::int64_t seekingBudget = 256LL << 20U;
constexpr std::int64_t packetBudget = 64LL << 20U;

int refuseOpen(AVFormatContext* /*context*/, AVIOContext** /*input*/, const char* /*url*/,
               int /*flags*/, AVDictionary** /*options*/) {
    return AVERROR(EPERM);
}

bool isRawAac(const AVFormatContext& format) {
    return std::string_view(format.iformat->name) == "aac";
}

/// Selects the audio stream and disables all others, such as covers and video.
AVStream* selectSound(AVFormatContext& format) {
    const std::span streams(format.streams, format.nb_streams);
    const int index = av_find_best_stream(&format, AVMEDIA_TYPE_AUDIO, -1, -1, nullptr, 0);
    if (index < 0)
        return nullptr;
    for (AVStream* stream : streams)
        stream->discard = stream->index == index ? AVDISCARD_DEFAULT : AVDISCARD_ALL;
    return streams[static_cast<std::size_t>(index)];
}

struct PacketDeleter {
    void operator()(AVPacket* packet) const { av_packet_free(&packet); }
};

/// The samples per frame from STREAMINFO, whose first field they are; 0 if it is missing.
int flacBlockSize(const AVCodecParameters& codec) {
    return codec.extradata_size > 1 ? codec.extradata[0] << 8 | codec.extradata[1] : 0;
}

} // namespace

void PacketReader::FormatCloser::operator()(AVFormatContext* context) const {
    avformat_close_input(&context);
}

PacketReader::Format PacketReader::openFormat(AVIOContext* input) {
    AVFormatContext* context = avformat_alloc_context();
    if (!context)
        return nullptr;
    context->pb = input;
    context->flags |= AVFMT_FLAG_CUSTOM_IO;
    context->format_probesize = probeSize;
    // A hostile file can't make connections or open other files.
    context->io_open = &refuseOpen;
    context->protocol_whitelist = av_strdup("file");
    context->format_whitelist = av_strdup(containers);
    AVDictionary* options = nullptr;
    av_dict_set(&options, "ignore_chapters", "1", 0);
    const int result = avformat_open_input(&context, "", nullptr, &options);
    av_dict_free(&options);
    if (result < 0)
        return nullptr;
    // Raw AAC packets are already complete frames; parsing them again takes two thirds of the time
    // to measure such a file.
    if (isRawAac(*context))
        context->flags |= AVFMT_FLAG_NOPARSE;
    return Format(context);
}

std::unique_ptr<PacketReader>
PacketReader::open(const char* path, const std::atomic<bool>& abandoned, const FileRange& range) {
    std::unique_ptr<FileInput> input = FileInput::open(path, abandoned, range);
    if (!input)
        return nullptr;
    input->hideNames(findCoverChunks(*input));
    input->allow(openingBudget);
    Format format = openFormat(input->context());
    if (!format)
        return nullptr;
    // Disabled streams aren't read or decoded to find out more about them.
    for (AVStream* stream : std::span(format->streams, format->nb_streams)) {
        if (stream->codecpar->codec_type != AVMEDIA_TYPE_AUDIO)
            stream->discard = AVDISCARD_ALL;
    }
    if (avformat_find_stream_info(format.get(), nullptr) < 0)
        return nullptr;
    AVStream* stream = selectSound(*format);
    if (!stream)
        return nullptr;
    std::unique_ptr<PacketReader> file(
        new PacketReader(std::move(input), std::move(format), stream));
    file->readDuration();
    return file;
}

const AVCodecParameters& PacketReader::codecParameters() const {
    return *stream_->codecpar;
}

AVRational PacketReader::timeBase() const {
    return stream_->time_base;
}

double PacketReader::seekMargin() const {
    constexpr double longestPage = 1.5; // seconds; muxers limit pages to one second
    return std::string_view(format_->iformat->name) == "ogg" ? longestPage : 0;
}

bool PacketReader::readPacket(AVPacket& packet) {
    input_->allow(packetBudget);
    while (av_read_frame(format_.get(), &packet) >= 0) {
        if (packet.stream_index == stream_->index)
            return true;
        av_packet_unref(&packet);
    }
    return false;
}

void PacketReader::seek(std::int64_t timestamp) {
    input_->allow(seekingBudget);
    // The first packet may be before zero: it only primes the codec.
    const AVIndexEntry* first = avformat_index_get_entry(stream_, 0);
    timestamp = std::max(timestamp, first ? first->timestamp : 0);
    const int index = stream_->index;
    if (av_seek_frame(format_.get(), index, timestamp, AVSEEK_FLAG_BACKWARD) < 0)
        av_seek_frame(format_.get(), index, 0, AVSEEK_FLAG_BYTE);
}

void PacketReader::readDuration() {
    const AVCodecParameters& codec = *stream_->codecpar;
    const bool isPcm = av_get_exact_bits_per_sample(codec.codec_id) > 0;
    // For PCM the container has the sample count, which saves reading the file.
    if (isPcm && stream_->nb_frames > 0 && codec.sample_rate > 0)
        duration_ = static_cast<double>(stream_->nb_frames) / codec.sample_rate;
    else if (format_->duration_estimation_method == AVFMT_DURATION_FROM_BITRATE)
        duration_ = measure();
    else if (stream_->duration != AV_NOPTS_VALUE)
        duration_ = inSeconds(stream_->duration);
    else if (format_->duration != AV_NOPTS_VALUE)
        duration_ = static_cast<double>(format_->duration) / AV_TIME_BASE;
    else
        duration_ = std::numeric_limits<double>::quiet_NaN();
}

void PacketReader::noteStart(std::int64_t timestamp) {
    const bool isOggStream =
        std::string_view(format_->iformat->name) == "ogg" && format_->nb_streams == 1;
    const std::int64_t end = isOggStream ? lastOggPosition(*input_).value_or(0) : 0;
    const AVCodecParameters& codec = *stream_->codecpar;
    if (codec.codec_id == AV_CODEC_ID_FLAC) // the demuxer assumes that it starts at zero
        timestamp = isOggStream ? firstOggPosition(*input_, flacBlockSize(codec)) : 0;
    else if (codec.codec_id == AV_CODEC_ID_OPUS)
        timestamp = av_sat_add64(timestamp, codec.initial_padding);
    if (end > 0 && end > timestamp)
        duration_ = inSeconds(av_sat_sub64(end, timestamp));
}

double PacketReader::measure() {
    const std::unique_ptr<AVPacket, PacketDeleter> packet(av_packet_alloc());
    if (!packet)
        return 0;
    const bool isWalked = isRawAac(*format_) && startWalk(*packet);
    const std::int64_t length = isWalked ? walk_->duration() : readThrough(*packet);
    // One that gave up knows only the file's first part.
    if (!isWalked || walk_->state() == RawAacWalk::State::Done)
        walk_.reset();
    seek(0);
    return inSeconds(length);
}

/// Scans the file for a limited time. For a file that is slow to read, samples are checked, and the
/// scan is finished later. False if the file doesn't consist of complete frames.
bool PacketReader::startWalk(AVPacket& packet) {
    using State = RawAacWalk::State;
    constexpr auto patience = std::chrono::milliseconds(20);
    // The index has the first packet once it has been read.
    if (!readPacket(packet))
        return false;
    av_packet_unref(&packet);
    const auto deadline = std::chrono::steady_clock::now() + patience;
    walk_ = std::make_unique<RawAacWalk>(*input_, *stream_);
    while (walk_->advance() == State::Walking && std::chrono::steady_clock::now() < deadline) {
    }
    if (walk_->state() == State::Walking && !walk_->hasFramesAhead()) {
        while (walk_->advance() == State::Walking) {
        }
    }
    return walk_->state() != State::Refused;
}

bool PacketReader::scanMore() {
    if (!walk_)
        return false;
    const bool goesOn = walk_->advance() == RawAacWalk::State::Walking;
    duration_ = inSeconds(walk_->duration());
    if (!goesOn)
        walk_.reset();
    return goesOn;
}

double PacketReader::inSeconds(std::int64_t time) const {
    return static_cast<double>(time) * av_q2d(stream_->time_base);
}

std::int64_t PacketReader::readThrough(AVPacket& packet) {
    std::int64_t length = 0;
    // Reading to the end also fills the index, which makes later seeks exact.
    while (readPacket(packet)) {
        length = av_sat_add64(length, packet.duration);
        av_packet_unref(&packet);
        if (avio_tell(format_->pb) > measureLimit)
            return stream_->duration;
    }
    return length;
}

} // namespace tamsy
