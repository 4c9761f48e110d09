#include "Playback/FFmpeg/RawAac.h"

#include "Formats/FrameHeader.h"

extern "C" {
#include <libavformat/avformat.h>
#include <libavutil/mathematics.h>
}

#include <array>
#include <cstring>

namespace tamsy {
namespace {

/// One entry for so many frames: an hour takes half a megabyte, a seek passes a fifth of a second.
constexpr std::int64_t framesPerEntry = 8;

constexpr std::int64_t id3v1Size = 128;

/// Reads the file's own bytes in order, each piece wherever it stands.
class Reader {
  public:
    explicit Reader(AVIOContext& input) : input_(input) {}

    bool read(std::int64_t place, void* target, int size) {
        return avio_seek(&input_, place, SEEK_SET) >= 0 &&
               avio_read(&input_, static_cast<unsigned char*>(target), size) == size;
    }

    std::optional<media::FrameHeader> frameAt(std::int64_t place) {
        std::array<std::byte, media::frameHeaderSize> bytes{};
        return read(place, bytes.data(), static_cast<int>(bytes.size()))
                   ? media::parseFrameHeader(bytes)
                   : std::nullopt;
    }

    /// Whether the sound is over at `place`: there the file ends, or its old tag begins.
    bool endsAt(std::int64_t place, std::int64_t size) {
        std::array<char, 3> name{};
        return place == size || (place + id3v1Size == size && read(place, name.data(), 3) &&
                                 std::memcmp(name.data(), "TAG", name.size()) == 0);
    }

  private:
    AVIOContext& input_;
};

} // namespace

std::optional<std::int64_t> indexRawAac(AVIOContext& input, AVStream& stream) {
    const AVIndexEntry* const start = avformat_index_get_entry(&stream, 0);
    if (!start)
        return std::nullopt;
    Reader reader(input);
    std::int64_t place = start->pos;
    const std::int64_t startTime = start->timestamp;
    const auto first = reader.frameAt(place);
    if (!first)
        return std::nullopt;
    const AVRational sampleTime{1, static_cast<int>(first->sampleRate)};
    const std::int64_t size = avio_size(&input);
    std::int64_t samples = 0;
    std::int64_t frames = 0;
    for (auto frame = first; frame && frame->kind == first->kind && frame->length <= size - place;
         frame = reader.frameAt(place)) {
        const std::int64_t time = startTime + av_rescale_q(samples, sampleTime, stream.time_base);
        if (frames++ % framesPerEntry == 0)
            av_add_index_entry(&stream, place, time, 0, 0, AVINDEX_KEYFRAME);
        place += frame->length;
        samples += frame->samples;
    }
    if (!reader.endsAt(place, size))
        return std::nullopt;
    return av_rescale_q(samples, sampleTime, stream.time_base);
}

} // namespace tamsy
