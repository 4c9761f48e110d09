#include "Playback/Miniaudio/AudioDecoder.h"

#include "Playback/Miniaudio/AudioFile.h"
#include "Playback/Miniaudio/FallbackDecoder.h"
#include "Playback/Miniaudio/MiniaudioDecoders.h"
#include "Playback/Miniaudio/MpegAudioScan.h"
#include "Playback/Miniaudio/OggVorbis.h"
#include "Playback/Miniaudio/ReadBudget.h"
#include "Utils/FileURL.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <utility>

namespace tamsy {
namespace {

// How much one call may read, in bytes. Vorbis files get their headers' size on top, since a seek
// to the start reads those.
constexpr std::int64_t openingBudget = 1'048'576;
constexpr std::int64_t seekingBudget = 16'777'216;

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

/// The extension's decoder first, then the others, so that a file with a wrong extension plays.
std::array<ma_encoding_format, 5> encodingsToTry(const QByteArray& extension) {
    const ma_encoding_format named = extension == "mp3"    ? ma_encoding_format_mp3
                                     : extension == "flac" ? ma_encoding_format_flac
                                     : extension == "ogg" || extension == "oga"
                                         ? ma_encoding_format_vorbis
                                         : ma_encoding_format_wav;
    return {named, ma_encoding_format_wav, ma_encoding_format_flac, ma_encoding_format_mp3,
            ma_encoding_format_vorbis};
}

ma_decoder_config configFor(ma_encoding_format encoding) {
    // In the file's channels and sample rate; we convert them.
    ma_decoder_config config = ma_decoder_config_init(AudioDecoder::format, 0, 0);
    // Naming the decoder keeps miniaudio from trying others, one of which accepts anything.
    config.encodingFormat = encoding;
    return config;
}

} // namespace

ma_result AudioDecoder::open(const FileURL& url) {
    path_ = url.path();
    file_ = std::make_unique<AudioFile>(path_);
    if (file_->error() != 0)
        return resultOf(file_->error());
    seekingBudget_ = seekingBudget;
    const bool isKnown = isKnownContainer(*file_);
    bool isUntried = isKnown; // the fallback decoder may support the file
    const auto encodings =
        encodingsToTry(holdsMpegAudio(*file_) ? QByteArray("mp3") : url.pathExtension().toLower());
    for (auto encoding = encodings.begin(); encoding != encodings.end(); ++encoding) {
        if (std::find(encodings.begin(), encoding, *encoding) != encoding)
            continue;
        // Almost any data contains something like an MPEG frame, so the fallback gets known
        // containers first.
        if (*encoding == ma_encoding_format_mp3 && encoding != encodings.begin() &&
            std::exchange(isUntried, false) && openByFallback() == MA_SUCCESS)
            return MA_SUCCESS;
        const ma_result result = *encoding == ma_encoding_format_mp3      ? openMpeg()
                                 : *encoding == ma_encoding_format_vorbis ? openVorbis()
                                                                          : openAs(*encoding);
        if (result != MA_SUCCESS)
            continue;
        mayFallBack_ = isKnown && kind_ != Kind::Mpeg && kind_ != Kind::Fallback;
        if (seeksBadly(*decoder_, *encoding))
            static_cast<void>(fallBack(0));
        return MA_SUCCESS;
    }
    return isUntried ? openByFallback() : MA_NO_BACKEND;
}

ma_result AudioDecoder::openMpeg() {
    if (!startScan())
        return MA_NO_BACKEND;
    const MpegAudioScan& scan = scanner_->scan();
    window_ = std::make_unique<FileWindow>(*file_, scan.start, scan.end);
    const ma_decoder_config config = configFor(ma_encoding_format_mp3);
    const ma_result result = openWith([&](ma_decoder& decoder) {
        return ma_decoder_init_vfs(window_->fileSystem(), path_.constData(), &config, &decoder);
    });
    if (result == MA_SUCCESS) {
        kind_ = Kind::Mpeg;
        takeScan();
    } else {
        scanner_.reset();
    }
    return result;
}

ma_result AudioDecoder::openVorbis() {
    const auto start = readVorbisStart(*file_);
    if (!start)
        return MA_NO_BACKEND;
    if (!isWholeVorbisStream(*file_, *start) && openByFallback() == MA_SUCCESS)
        return MA_SUCCESS;
    seekingBudget_ = seekingBudget + static_cast<std::int64_t>(start->headerBytes);
    return openAs(ma_encoding_format_vorbis, static_cast<std::int64_t>(start->headerBytes));
}

ma_result AudioDecoder::openAs(ma_encoding_format encoding, std::int64_t headerBytes) {
    const ReadBudget budget(openingBudget + headerBytes);
    const ma_decoder_config config = configFor(encoding);
    const ma_result result = openWith([&](ma_decoder& decoder) {
        return ma_decoder_init_file(path_.constData(), &config, &decoder);
    });
    const bool isFlac = result == MA_SUCCESS && encoding == ma_encoding_format_flac;
    kind_ = isFlac ? Kind::Flac : Kind::Other;
    isFlacUnchecked_ = isFlac;
    return result;
}

ma_result AudioDecoder::openByFallback() {
    const ma_result result = openWith(
        [this](ma_decoder& decoder) { return openFallback(path_, isAbandoned_, decoder); });
    if (result == MA_SUCCESS)
        kind_ = Kind::Fallback;
    return result;
}

/// Replaces the decoder by one that `initialise` opens. After a failure the old one stays.
template <typename Initialise>
ma_result AudioDecoder::openWith(Initialise initialise) {
    auto decoder = std::make_unique<ma_decoder>();
    if (const ma_result result = initialise(*decoder); result != MA_SUCCESS)
        return result;
    Decoder previous = std::exchange(decoder_, Decoder(decoder.release()));
    if (startConversion())
        return MA_SUCCESS;
    decoder_ = std::move(previous);
    return MA_FORMAT_NOT_SUPPORTED;
}

/// Continues at `frame` with the fallback decoder, if that supports the file and has frames there.
/// Otherwise returns false and restores the previous decoder, as far as it can seek back.
bool AudioDecoder::fallBack(std::uint64_t frame) {
    if (!std::exchange(mayFallBack_, false))
        return false;
    Decoder previous = std::exchange(decoder_, nullptr);
    const Kind kind = kind_;
    const bool hadEnded = hasEnded_ && converted_.empty();
    if (openByFallback() == MA_SUCCESS && seekToFrame(frame) == MA_SUCCESS) {
        convertMore();
        if (!converted_.empty() || !hasEnded_) {
            isFlacUnchecked_ = false;
            return true;
        }
    }
    decoder_ = std::move(previous);
    kind_ = kind;
    static_cast<void>(startConversion());
    if (!hadEnded)
        static_cast<void>(seekToFrame(frame));
    hasEnded_ = hadEnded;
    return false;
}

/// Scans an MPEG file for a limited time. For a file that is slow to read, samples are checked, and
/// the scan is finished later.
bool AudioDecoder::startScan() {
    using State = MpegAudioScanner::State;
    constexpr auto patience = std::chrono::milliseconds(20);
    const auto deadline = std::chrono::steady_clock::now() + patience;
    scanner_ = std::make_unique<MpegAudioScanner>(*file_);
    while (scanner_->advance() == State::Walking && std::chrono::steady_clock::now() < deadline) {
    }
    if (scanner_->state() == State::Walking && !scanner_->hasMusicAhead()) {
        while (!isAbandoned_ && scanner_->advance() == State::Walking) {
        }
    }
    if (scanner_->state() == State::Refused)
        scanner_.reset();
    return scanner_ != nullptr;
}

} // namespace tamsy
