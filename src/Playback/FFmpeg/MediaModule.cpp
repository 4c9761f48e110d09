#include "Playback/FFmpeg/ChainedDecoder.h"
#include "Playback/FFmpeg/MediaBackend.h"
#include "Playback/FFmpeg/PulseOutput.h"
#include "Playback/FFmpeg/SDLAudioOutput.h"
#include "Playback/FFmpeg/SilentOutput.h"

extern "C" {
#include <libavutil/log.h>
}

namespace tamsy {
namespace {

class FFmpegAndOutputs : public MediaBackend {
  public:
    // The libraries' messages about damaged files are dropped.
    FFmpegAndOutputs() { av_log_set_level(AV_LOG_QUIET); }

    std::unique_ptr<MediaDecoder> openFile(const char* path,
                                           const std::atomic<bool>& abandoned) override {
        return openMedia(path, abandoned);
    }

    std::unique_ptr<AudioOutput> openOutput(AudioRenderer& renderer, bool maySilent) override {
        if (auto output = PulseOutput::open(renderer))
            return output;
        if (auto output = SDLAudioOutput::open(renderer))
            return output;
        return maySilent ? std::make_unique<SilentOutput>(renderer) : nullptr;
    }
};

} // namespace
} // namespace tamsy

extern "C" [[gnu::visibility("default")]] tamsy::MediaBackend* tamsyMediaBackend() {
    // Never destroyed: a thread that is stuck in a file or a sound server may use it at exit.
    static auto& backend = *new tamsy::FFmpegAndOutputs;
    return &backend;
}
