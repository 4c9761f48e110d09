#include "Playback/FFmpeg/FFmpegDecoder.h"
#include "Playback/FFmpeg/MediaBackend.h"
#include "Playback/FFmpeg/SDLAudioOutput.h"
#include "Playback/FFmpeg/SilentOutput.h"

extern "C" {
#include <libavutil/log.h>
}

namespace tamsy {
namespace {

class FFmpegAndSDL : public MediaBackend {
  public:
    // What the libraries say about broken files goes to a stream that nobody reads.
    FFmpegAndSDL() { av_log_set_level(AV_LOG_QUIET); }

    std::unique_ptr<MediaDecoder> openFile(const char* path,
                                           const std::atomic<bool>& abandoned) override {
        return FFmpegDecoder::open(path, abandoned);
    }

    std::unique_ptr<AudioOutput> openOutput(AudioRenderer& renderer) override {
        if (auto output = SDLAudioOutput::open(renderer))
            return output;
        return std::make_unique<SilentOutput>(renderer);
    }
};

} // namespace
} // namespace tamsy

extern "C" [[gnu::visibility("default")]] tamsy::MediaBackend* tamsyMediaBackend() {
    static tamsy::FFmpegAndSDL backend;
    return &backend;
}
