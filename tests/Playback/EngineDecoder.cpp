#include "Playback/EngineDecoder.h"

#include "Playback/FFmpeg/MediaBackendModule.h"
#include "Playback/Miniaudio/AudioDecoder.h"
#include "Utils/FileURL.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cmath>

namespace tamsy::test {
namespace {

class FirstEngine : public EngineDecoder {
  public:
    [[nodiscard]] bool open(const FileURL& url) { return decoder_.open(url) == MA_SUCCESS; }

    [[nodiscard]] double length() override {
        while (decoder_.scanMore()) {
        }
        return decoder_.length();
    }
    [[nodiscard]] bool seek(double seconds) override {
        return decoder_.seek(seconds) == MA_SUCCESS;
    }
    [[nodiscard]] std::size_t read(std::span<StereoFrame> frames) override {
        return static_cast<std::size_t>(decoder_.read(frames.data(), frames.size()));
    }

  private:
    AudioDecoder decoder_;
};

class SecondEngine : public EngineDecoder {
  public:
    [[nodiscard]] bool open(const FileURL& url) {
        MediaBackend* backend = loadMediaBackend();
        if (backend != nullptr)
            decoder_ = backend->openFile(url.path().constData(), abandoned_);
        return decoder_ != nullptr;
    }

    [[nodiscard]] double length() override {
        const double seconds = decoder_->duration();
        return std::isfinite(seconds) ? seconds : 0;
    }
    [[nodiscard]] bool seek(double seconds) override {
        block_ = {};
        return std::abs(decoder_->seek(seconds) - seconds) < 0.001;
    }
    [[nodiscard]] std::size_t read(std::span<StereoFrame> frames) override {
        std::size_t filled = 0;
        while (filled < frames.size() && (!block_.frames.empty() || !block_.ended)) {
            if (block_.frames.empty())
                block_ = decoder_->decode();
            const auto given = std::min(frames.size() - filled, block_.frames.size());
            std::ranges::copy(block_.frames.first(given), frames.subspan(filled).begin());
            block_.frames = block_.frames.subspan(given);
            filled += given;
        }
        return filled;
    }

  private:
    const std::atomic<bool> abandoned_ = false;
    std::unique_ptr<MediaDecoder> decoder_;
    MediaDecoder::Block block_;
};

template <typename Engine>
std::unique_ptr<EngineDecoder> openWith(const FileURL& url) {
    auto decoder = std::make_unique<Engine>();
    return decoder->open(url) ? std::move(decoder) : nullptr;
}

} // namespace

std::unique_ptr<EngineDecoder> EngineDecoder::open(const FileURL& url) {
    constexpr std::array extensions = {"mp3", "wav", "flac", "ogg", "oga"};
    const QByteArray extension = url.pathExtension().toLower();
    const bool isFirst =
        std::ranges::any_of(extensions, [&](const char* name) { return extension == name; });
    return isFirst ? openWithFirst(url) : openWithSecond(url);
}

std::unique_ptr<EngineDecoder> EngineDecoder::openWithFirst(const FileURL& url) {
    return openWith<FirstEngine>(url);
}

std::unique_ptr<EngineDecoder> EngineDecoder::openWithSecond(const FileURL& url) {
    return openWith<SecondEngine>(url);
}

std::vector<StereoFrame> EngineDecoder::take(std::size_t count) {
    constexpr std::size_t block = 480; // as a device asks
    std::vector<StereoFrame> frames;
    for (bool isMore = true; isMore && frames.size() < count;) {
        const std::size_t before = frames.size();
        const std::size_t wanted = std::min(block, count - before);
        frames.resize(before + wanted);
        frames.resize(before + read(std::span(frames).subspan(before)));
        isMore = frames.size() == before + wanted;
    }
    return frames;
}

} // namespace tamsy::test
