// Compiles miniaudio and the Vorbis decoder that it uses. A separate file because it is large, and
// compiled without warnings because most of it isn't ours.

#include "Playback/Miniaudio/MiniaudioDecoders.h"
#include "Playback/Miniaudio/MiniaudioPulse.h"
#include "Playback/Miniaudio/ReadBudget.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>

// Both libraries open and read files through these names only; a decoder lost in a damaged file is
// thus limited to the budget of the call that it serves.
#define fopen(path, mode) tamsy::ReadBudget::open(path, mode)
#define fopen64(path, mode) tamsy::ReadBudget::open(path, mode)
#define fread(target, size, count, file) tamsy::ReadBudget::read(target, size, count, file)
#define fgetc(file) tamsy::ReadBudget::readByte(file)

#define STB_VORBIS_HEADER_ONLY
#include <stb/stb_vorbis.h>
#define MINIAUDIO_IMPLEMENTATION
#include <miniaudio.h>
#undef STB_VORBIS_HEADER_ONLY
// When it aborts it frees pointers that it may not have set; null is harmless.
#define malloc(size) std::calloc(1, size)
#include <stb/stb_vorbis.h>
#undef malloc

namespace tamsy {
namespace {

/// The output frames of the first frame if it only describes the stream (Xing or Info), since the
/// decoder skips it; otherwise 0.
std::uint64_t tagFrameOutput(const ma_dr_mp3& mpeg, const MpegAudioScan& scan) {
    const bool firstFrameIsTag = mpeg.streamStartOffset >= scan.firstFrameEnd - scan.start;
    return firstFrameIsTag ? scan.firstFramePcmFrames : 0;
}

} // namespace

void bindMpegSeekTable(ma_decoder& decoder, const MpegAudioScan& scan) {
    auto& backend = *static_cast<ma_mp3*>(decoder.pBackend);
    auto& mpeg = backend.dr;
    // Freed by the backend.
    auto* table = static_cast<ma_dr_mp3_seek_point*>(
        ma_malloc(sizeof(ma_dr_mp3_seek_point) * (scan.points.size() + 1), nullptr));
    if (table == nullptr)
        return;
    // The decoder drops the encoder delay only at the start; later positions don't include it.
    const std::uint64_t delay = mpeg.delayInPCMFrames;
    const std::uint64_t dropped = delay + tagFrameOutput(mpeg, scan);
    // The first frame after a restart lacks the overlap with the previous one.
    const std::uint32_t settling = 2 * scan.firstFramePcmFrames;
    ma_uint32 count = 0;
    table[count++] = {mpeg.streamStartOffset, 0, 0, 0};
    for (const MpegSeekPoint& point : scan.points) {
        if (point.pcmFrame > dropped + delay)
            table[count++] = {point.byte - scan.start, point.pcmFrame - dropped + settling, 0,
                              static_cast<ma_uint16>(settling)};
    }
    ma_dr_mp3_bind_seek_table(&mpeg, count, table);
    ma_free(backend.pSeekPoints, nullptr); // of an earlier, shorter scan
    backend.pSeekPoints = table;
    backend.seekPointCount = count;
}

void correctMpegLength(ma_decoder& decoder, const MpegAudioScan& scan) {
    auto& mpeg = static_cast<ma_mp3*>(decoder.pBackend)->dr;
    const std::uint64_t tolerance = 2 * std::uint64_t{scan.firstFramePcmFrames};
    const std::uint64_t found =
        scan.pcmFrames - std::min(scan.pcmFrames, tagFrameOutput(mpeg, scan));
    const std::uint64_t told = mpeg.totalPCMFrameCount;
    if (told == MA_UINT64_MAX || (found + tolerance >= told && told + tolerance >= found))
        return;
    mpeg.totalPCMFrameCount = found;
    mpeg.paddingInPCMFrames = 0;
}

void noteMpegPosition(ma_decoder& decoder, std::uint64_t pcmFrame) {
    auto& mpeg = static_cast<ma_mp3*>(decoder.pBackend)->dr;
    if (pcmFrame > 0)
        mpeg.currentPCMFrame = pcmFrame + mpeg.delayInPCMFrames;
}

std::uint64_t mpegDelay(const ma_decoder& decoder) {
    return static_cast<const ma_mp3*>(decoder.pBackend)->dr.delayInPCMFrames;
}

FlacHeader flacHeader(const ma_decoder& decoder) {
    const auto& flac = *static_cast<const ma_flac*>(decoder.pBackend)->dr;
    return {.samples = flac.totalPCMFrameCount,
            .sampleRate = flac.sampleRate,
            .channels = flac.channels,
            .blockSize = flac.maxBlockSizeInPCMFrames,
            .maxFrameBytes = flac.maxBlockSizeInPCMFrames * std::uint32_t{flac.channels} *
                             flac.bitsPerSample / 8};
}

void correctFlacSamples(ma_decoder& decoder, std::uint64_t samples) {
    static_cast<ma_flac*>(decoder.pBackend)->dr->totalPCMFrameCount = samples;
}

std::optional<double> untoldMpegLength(const ma_decoder& decoder, std::uint64_t pcmFrames) {
    const auto& mpeg = static_cast<const ma_mp3*>(decoder.pBackend)->dr;
    if (mpeg.totalPCMFrameCount != MA_UINT64_MAX || mpeg.sampleRate == 0)
        return std::nullopt;
    return static_cast<double>(pcmFrames) / mpeg.sampleRate;
}

bool seeksBadly(const ma_decoder& decoder, ma_encoding_format encoding) {
    if (encoding == ma_encoding_format_flac) {
        const auto& flac = *static_cast<const ma_flac*>(decoder.pBackend)->dr;
        return flac.container == ma_dr_flac_container_ogg;
    }
    if (encoding != ma_encoding_format_wav)
        return false;
    const auto tag = static_cast<const ma_wav*>(decoder.pBackend)->dr.translatedFormatTag;
    return tag == MA_DR_WAVE_FORMAT_ADPCM || tag == MA_DR_WAVE_FORMAT_DVI_ADPCM;
}

void dropFlacFrame(ma_decoder& decoder) {
    auto& flac = *static_cast<ma_flac*>(decoder.pBackend)->dr;
    flac.currentFLACFrame.pcmFramesRemaining = 0;
    flac.currentFLACFrame.header.blockSizeInPCMFrames = 0;
    flac.currentPCMFrame = UINT64_MAX;
    if (flac.container == ma_dr_flac_container_ogg)
        static_cast<ma_dr_flac_oggbs*>(flac._oggbs)->bytesRemainingInPage = 0;
}

namespace {

ma_pa_stream* pulseStream(const ma_device& device) {
    const bool isPulse =
        device.pContext != nullptr && device.pContext->backend == ma_backend_pulseaudio;
    return isPulse ? static_cast<ma_pa_stream*>(device.pulse.pStreamPlayback) : nullptr;
}

} // namespace

void flushPulseStream(ma_device& device) {
    ma_pa_stream* stream = pulseStream(device);
    if (stream == nullptr)
        return;
    const auto& library = device.pContext->pulse;
    const auto flush = reinterpret_cast<ma_pa_stream_flush_proc>(library.pa_stream_flush);
    const auto release = reinterpret_cast<ma_pa_operation_unref_proc>(library.pa_operation_unref);
    // No need to wait: the server flushes before it gets what the next start writes.
    if (ma_pa_operation* operation = flush(stream, nullptr, nullptr))
        release(operation);
}

bool waitForPulseServer(ma_device& device) {
    ma_pa_stream* stream = pulseStream(device);
    if (stream == nullptr)
        return true;
    const auto cork =
        reinterpret_cast<ma_pa_stream_cork_proc>(device.pContext->pulse.pa_stream_cork);
    constexpr int corked = 1; // it is already
    ma_pa_operation* operation = cork(stream, corked, nullptr, nullptr);
    return ma_wait_for_operation_and_unref__pulse(device.pContext, device.pulse.pMainLoop,
                                                  operation) == MA_SUCCESS;
}

bool hasLostPulseServer(const ma_device& device) {
    ma_pa_stream* stream = pulseStream(device);
    if (stream == nullptr)
        return false;
    const auto& library = device.pContext->pulse;
    const auto contextState =
        reinterpret_cast<ma_pa_context_get_state_proc>(library.pa_context_get_state);
    const auto streamState =
        reinterpret_cast<ma_pa_stream_get_state_proc>(library.pa_stream_get_state);
    auto* connection = static_cast<ma_pa_context*>(device.pulse.pPulseContext);
    return contextState(connection) != MA_PA_CONTEXT_READY ||
           streamState(stream) != MA_PA_STREAM_READY;
}

} // namespace tamsy
