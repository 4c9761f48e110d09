#include "Playback/Miniaudio/FallbackDecoder.h"

#include "Formats/ByteCursor.h"
#include "Playback/FFmpeg/MediaBackendModule.h"
#include "Playback/Miniaudio/LeadingTags.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <memory>
#include <span>
#include <string_view>

namespace tamsy {
namespace {

/// Calls without sound after which a damaged file counts as ended; each examines 32 packets.
constexpr int emptyCallsLimit = 256;

/// A media decoder as a miniaudio data source.
struct FallbackSource {
    ma_data_source_base base{}; // first, as miniaudio requires
    std::unique_ptr<MediaDecoder> decoder;
    MediaDecoder::Block block; // not yet read
    std::uint64_t nextFrame = 0;

    void decodeMore() {
        for (int i = 0; i < emptyCallsLimit && block.frames.empty() && !block.ended; ++i)
            block = decoder->decode();
        block.ended = block.ended || block.frames.empty();
    }

    std::size_t read(std::span<StereoFrame> output) {
        std::size_t filled = 0;
        while (filled < output.size()) {
            if (block.frames.empty())
                decodeMore();
            const auto given = std::min(output.size() - filled, block.frames.size());
            if (given == 0)
                break;
            std::copy_n(block.frames.begin(), given, output.subspan(filled).begin());
            block.frames = block.frames.subspan(given);
            filled += given;
        }
        nextFrame += filled;
        return filled;
    }

    /// False if it lands after the target.
    bool seek(std::uint64_t frame) {
        constexpr double tolerance = 0.001; // in seconds
        const double target = static_cast<double>(frame) / mediaSampleRate;
        const double reached = decoder->seek(target);
        block = {};
        nextFrame = frame;
        return reached <= target + tolerance;
    }
};

FallbackSource& sourceOf(ma_data_source* source) {
    return *static_cast<FallbackSource*>(source);
}

ma_result read(ma_data_source* source, void* output, ma_uint64 count, ma_uint64* countRead) {
    *countRead = sourceOf(source).read({static_cast<StereoFrame*>(output), count});
    return *countRead < count ? MA_AT_END : MA_SUCCESS;
}

ma_result seek(ma_data_source* source, ma_uint64 frame) {
    return sourceOf(source).seek(frame) ? MA_SUCCESS : MA_BAD_SEEK;
}

ma_result dataFormat(ma_data_source* /*source*/, ma_format* format, ma_uint32* channels,
                     ma_uint32* rate, ma_channel* map, std::size_t mapCapacity) {
    constexpr ma_uint32 channelCount = 2;
    if (format != nullptr)
        *format = ma_format_f32;
    if (channels != nullptr)
        *channels = channelCount;
    if (rate != nullptr)
        *rate = mediaSampleRate;
    if (map != nullptr)
        ma_channel_map_init_standard(ma_standard_channel_map_default, map, mapCapacity,
                                     channelCount);
    return MA_SUCCESS;
}

ma_result cursor(ma_data_source* source, ma_uint64* frame) {
    *frame = sourceOf(source).nextFrame;
    return MA_SUCCESS;
}

ma_result length(ma_data_source* source, ma_uint64* frames) {
    constexpr double longest = 1e9; // in seconds
    const double seconds = sourceOf(source).decoder->duration();
    const bool isTold = seconds > 0 && seconds < longest; // not for NaN
    *frames = isTold ? static_cast<ma_uint64>(std::llround(seconds * mediaSampleRate)) : 0;
    return MA_SUCCESS;
}

constexpr ma_data_source_vtable sourceFunctions = {read,   seek,    dataFormat, cursor,
                                                   length, nullptr, 0};

ma_result initialise(void* userData, const char* /*path*/,
                     const ma_decoding_backend_config* /*config*/,
                     const ma_allocation_callbacks* /*allocation*/, ma_data_source** backend) {
    auto& source = *static_cast<std::unique_ptr<FallbackSource>*>(userData);
    ma_data_source_config config = ma_data_source_config_init();
    config.vtable = &sourceFunctions;
    const ma_result result = ma_data_source_init(&config, &source->base);
    if (result == MA_SUCCESS)
        *backend = source.release();
    return result;
}

void uninitialise(void* /*userData*/, ma_data_source* backend,
                  const ma_allocation_callbacks* /*allocation*/) {
    ma_data_source_uninit(backend);
    const std::unique_ptr<FallbackSource> owned(static_cast<FallbackSource*>(backend));
}

ma_decoding_backend_vtable backendFunctions = {nullptr, initialise, nullptr, nullptr, uninitialise};

} // namespace

bool isKnownContainer(const AudioFile& file) {
    constexpr std::array<std::uint32_t, 4> starts = {0x664C6143, 0x4F676753, 0x52494646,
                                                     0x52463634}; // fLaC, OggS, RIFF, RF64
    std::array<std::byte, 4> start{};
    const auto first = ByteCursor(file.read(endOfLeadingTags(file), start)).readU32();
    constexpr std::uint32_t flacFrame = 0xFFF8; // the last bit is the blocking strategy, either one
    return first && (std::find(starts.begin(), starts.end(), *first) != starts.end() ||
                     (*first >> 17U) == flacFrame >> 1U);
}

bool holdsMpegAudio(const AudioFile& file) {
    constexpr std::size_t enough = 512; // only small chunks precede the format
    constexpr std::string_view formatChunk = "fmt ";
    constexpr std::uint16_t mpeg = 0x50;
    constexpr std::uint16_t layer3 = 0x55;
    std::array<std::byte, enough> buffer{};
    const auto bytes = file.read(endOfLeadingTags(file), buffer);
    const std::string_view text(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    const std::size_t chunk = text.find(formatChunk);
    if (!text.starts_with("RIFF") || chunk == std::string_view::npos)
        return false;
    ByteCursor cursor(bytes);
    const std::uint16_t tag =
        cursor.seek(chunk + 8) ? cursor.readU16LE().value_or(0) : std::uint16_t{0};
    return tag == mpeg || tag == layer3;
}

ma_result openFallback(const QByteArray& path, const std::atomic<bool>& isAbandoned,
                       ma_decoder& decoder) {
    MediaBackend* const module = loadMediaBackend();
    auto source = std::make_unique<FallbackSource>();
    if (module != nullptr)
        source->decoder = module->openFile(path.constData(), isAbandoned);
    if (!source->decoder)
        return MA_NO_BACKEND;
    std::array<ma_decoding_backend_vtable*, 1> backends = {&backendFunctions};
    ma_decoder_config config = ma_decoder_config_init(ma_format_f32, 0, 0);
    config.ppCustomBackendVTables = backends.data();
    config.customBackendCount = backends.size();
    config.pCustomBackendUserData = &source;
    return ma_decoder_init_file(path.constData(), &config, &decoder);
}

} // namespace tamsy
