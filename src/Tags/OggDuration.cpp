#include "Tags/OggDuration.h"

#include "Formats/FlacFrame.h"
#include "Formats/OggPackets.h"
#include "Formats/OggSamples.h"

#include <algorithm>

namespace tamsy::media {

namespace {

// A page has at most 64 KB; most have far less.
constexpr std::uint64_t tailSizes[] = {8192, 66'000};

constexpr int maxFlacBlocks = 64;

using Packet = std::shared_ptr<const OggPacket>;

QByteArray startOf(const Packet& packet, std::size_t length) {
    return packet->copy(0, std::min<std::uint64_t>(packet->size(), length));
}

Bytes bytesOf(const QByteArray& bytes) {
    return std::as_bytes(std::span(bytes));
}

/// Counts the samples of consecutive packets.
class SampleCounter {
  public:
    /// Reads the header packets from `walk`; nothing if they are damaged.
    static std::optional<SampleCounter> start(OggPacketWalk& walk, const OggStream& stream) {
        SampleCounter counter(stream);
        const Packet identification = walk.next();
        const Packet comments = walk.next();
        if (!comments || stream.codec != OggCodec::Vorbis)
            return comments ? std::optional(counter) : std::nullopt;
        const Packet setup = walk.next();
        if (!setup)
            return std::nullopt;
        const QByteArray first = startOf(identification, 30);
        constexpr std::uint64_t maxModes = 4096; // bytes, at the end of the header
        const std::uint64_t length = std::min(setup->size(), maxModes);
        const QByteArray third = setup->copy(setup->size() - length, length);
        counter.blockSizes_ = VorbisBlockSizes::parse(bytesOf(first), bytesOf(third));
        return counter.blockSizes_ ? std::optional(counter) : std::nullopt;
    }

    /// Nothing for the metadata that FLAC has after its header packets.
    std::optional<std::uint64_t> samplesOf(const Packet& packet) {
        if (stream_.codec == OggCodec::Speex)
            return stream_.packetSamples;
        if (stream_.codec == OggCodec::Flac) {
            const auto frame =
                parseFlacFrameHeader(bytesOf(startOf(packet, FlacFrameHeader::maxSize)));
            return frame ? std::optional<std::uint64_t>(frame->blockSize) : std::nullopt;
        }
        const QByteArray start = startOf(packet, 2);
        if (stream_.codec == OggCodec::Opus)
            return opusSamples(bytesOf(start));
        const std::uint32_t block = start.isEmpty() ? 0 : blockSizes_->of(bytesOf(start).front());
        const std::uint64_t samples = previousBlock_ == 0 ? 0 : (previousBlock_ + block) / 4;
        previousBlock_ = block;
        return samples;
    }

  private:
    explicit SampleCounter(const OggStream& stream) : stream_(stream) {}

    OggStream stream_;
    std::optional<VorbisBlockSizes> blockSizes_;
    std::uint32_t previousBlock_ = 0; // samples
};

/// The position of the link's first sample.
std::uint64_t firstGranule(MediaParse& parse, const OggStream& stream) {
    OggPacketWalk walk(parse.source, parse.window, stream.offset, stream.serial);
    auto counter = SampleCounter::start(walk, stream);
    if (!counter)
        return 0;
    // The first page's position is at the end of the last packet that ends on it.
    std::optional<std::uint64_t> granule;
    std::uint64_t page = 0;
    std::uint64_t samples = 0;
    while (const Packet packet = walk.next()) {
        if (granule && walk.page().body != page)
            break;
        const auto decoded = counter->samplesOf(packet);
        if (!decoded)
            continue;
        granule = walk.page().granule;
        page = walk.page().body;
        samples += *decoded;
        if (walk.isAtPageEnd())
            break;
    }
    return granule ? *granule - std::min(*granule, samples) : 0;
}

/// The position at the end of the stream's last complete page, if that is in the last `length`
/// bytes before `end`.
std::optional<std::uint64_t> lastGranule(const ByteSource& source, std::uint64_t end,
                                         std::uint64_t length, std::uint32_t serial) {
    length = std::min(length, end);
    ByteWindow window(source, static_cast<std::size_t>(length));
    return findLastOggGranule(window.read(end - length, static_cast<std::size_t>(length)), serial);
}

} // namespace

double oggDuration(MediaParse& parse, const OggStream& stream, std::uint64_t end) {
    if (stream.sampleRate == 0)
        return 0;
    for (const std::uint64_t length : tailSizes) {
        const auto granule = lastGranule(*parse.source, end, length, stream.serial);
        if (!granule)
            continue;
        const std::uint64_t start = firstGranule(parse, stream) + stream.preSkip;
        return static_cast<double>(*granule - std::min(*granule, start)) / stream.sampleRate;
    }
    return 0;
}

} // namespace tamsy::media
