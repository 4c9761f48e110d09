#include "Playback/AudioDecoder.h"

#include "Playback/AudioFile.h"
#include "Playback/MiniaudioDecoders.h"
#include "Playback/MpegAudioScan.h"
#include "Playback/OggFlac.h"
#include "Playback/OggVorbis.h"
#include "Playback/ReadBudget.h"

#include <algorithm>
#include <array>
#include <cerrno>

namespace tamsy {
namespace {

// What one call may read of a file. A sound file needs a fraction of each; a search through the
// rest of a broken one stays short. In an Ogg file FLAC has to be read up to the target, and Vorbis
// goes to the start by way of its headers.
constexpr std::int64_t openingBudget = 1'048'576;
constexpr std::int64_t readingBudget = 4'194'304;
constexpr std::int64_t seekingBudget = 16'777'216;
constexpr std::int64_t seekingBudgetInOgg = 1'073'741'824;

ma_result resultOf(int systemError) {
    switch (systemError) {
    case ENOENT:
        return MA_DOES_NOT_EXIST;
    case EACCES:
        return MA_ACCESS_DENIED;
    case EISDIR:
        return MA_IS_DIRECTORY;
    default:
        return MA_INVALID_FILE;
    }
}

/// The decoder that the extension names, then the others: a file under a wrong name plays.
std::array<ma_encoding_format, 5> encodingsToTry(const QByteArray& extension) {
    const ma_encoding_format named = extension == "mp3"    ? ma_encoding_format_mp3
                                     : extension == "flac" ? ma_encoding_format_flac
                                     : extension == "ogg" || extension == "oga"
                                         ? ma_encoding_format_vorbis
                                         : ma_encoding_format_wav;
    return {named, ma_encoding_format_wav, ma_encoding_format_flac, ma_encoding_format_mp3,
            ma_encoding_format_vorbis};
}

} // namespace

AudioDecoder::~AudioDecoder() {
    if (isOpen_)
        static_cast<void>(ma_decoder_uninit(&decoder_));
}

ma_result AudioDecoder::open(const FileURL& url) {
    const QByteArray path = url.path();
    const AudioFile file(path);
    if (file.error() != 0)
        return resultOf(file.error());
    seekingBudget_ = seekingBudget;
    const auto encodings = encodingsToTry(url.pathExtension().toLower());
    for (auto encoding = encodings.begin(); encoding != encodings.end(); ++encoding) {
        if (std::find(encodings.begin(), encoding, *encoding) != encoding)
            continue;
        if (*encoding == ma_encoding_format_mp3) {
            const auto scan = scanMpegAudio(file);
            if (!scan || openAs(*encoding, path) != MA_SUCCESS)
                continue;
            bindMpegSeekTable(decoder_, *scan);
            scannedLength_ = untoldMpegLength(decoder_, *scan);
            return MA_SUCCESS;
        }
        std::int64_t headers = 0;
        if (*encoding == ma_encoding_format_vorbis) {
            const auto bytes = vorbisHeaderBytes(file);
            if (!bytes)
                continue;
            headers = static_cast<std::int64_t>(*bytes);
        }
        const ReadBudget budget(openingBudget + headers);
        if (openAs(*encoding, path) != MA_SUCCESS)
            continue;
        seekingBudget_ += headers;
        isFlacInOgg_ = *encoding == ma_encoding_format_flac && isOgg(file);
        if (isFlacInOgg_) {
            seekingBudget_ = seekingBudgetInOgg;
            tellFlacLength(decoder_, lastGranulePosition(file));
        }
        return MA_SUCCESS;
    }
    return MA_NO_BACKEND;
}

ma_result AudioDecoder::openAs(ma_encoding_format encoding, const QByteArray& path) {
    ma_decoder_config config = ma_decoder_config_init(format, channels, sampleRate);
    // Named, so that no other decoder is tried: one of them takes anything for sound.
    config.encodingFormat = encoding;
    const ma_result result = ma_decoder_init_file(path.constData(), &config, &decoder_);
    isOpen_ = result == MA_SUCCESS;
    return result;
}

double AudioDecoder::length() {
    if (scannedLength_)
        return *scannedLength_;
    ma_uint64 frames = 0;
    // One that can't be told leaves 0.
    static_cast<void>(ma_decoder_get_length_in_pcm_frames(&decoder_, &frames));
    return static_cast<double>(frames) / static_cast<double>(decoder_.outputSampleRate);
}

ma_result AudioDecoder::seek(double seconds) {
    constexpr double largest = 18'446'744'073'709'549'568.0; // the last one below 2^64
    const double frames = seconds * static_cast<double>(decoder_.outputSampleRate);
    const ReadBudget budget(seekingBudget_);
    isLost_ = false;
    const ma_result result =
        ma_decoder_seek_to_pcm_frame(&decoder_, static_cast<ma_uint64>(std::min(frames, largest)));
    if (isFlacInOgg_ && result != MA_SUCCESS)
        leaveOggPage(decoder_);
    return result;
}

ma_uint64 AudioDecoder::read(void* output, ma_uint64 count) {
    ma_uint64 framesRead = 0;
    if (isLost_)
        return 0;
    const ReadBudget budget(readingBudget);
    // An error in the middle reads as the end.
    static_cast<void>(ma_decoder_read_pcm_frames(&decoder_, output, count, &framesRead));
    isLost_ = ReadBudget::isSpent();
    return std::min(framesRead, count);
}

double AudioDecoder::place() {
    ma_uint64 frame = 0;
    ma_uint32 rate = 0;
    ma_data_source* file = decoder_.pBackend; // the decoder's own count believes every seek
    if (ma_data_source_get_data_format(file, nullptr, nullptr, &rate, nullptr, 0) != MA_SUCCESS ||
        ma_data_source_get_cursor_in_pcm_frames(file, &frame) != MA_SUCCESS || rate == 0)
        return 0;
    return static_cast<double>(frame) / rate;
}

} // namespace tamsy
