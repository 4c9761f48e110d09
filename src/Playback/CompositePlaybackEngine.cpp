#include "Playback/CompositePlaybackEngine.h"

#include "Playback/FFmpeg/AVPlaybackEngine.h"
#include "Playback/Miniaudio/MiniaudioPlaybackEngine.h"
#include "Utils/FileURL.h"
#include "Utils/PlaybackLogger.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace tamsy {
namespace {

constexpr std::array<std::string_view, 5> miniaudioFormats = {"mp3", "wav", "flac", "ogg", "oga"};

/// Forwards every value of `source` to `target`. Copies of a subject share its state, so a
/// concurrent send on another thread may safely outlive the engine.
template <typename T>
Subscription forward(const Publisher<T>& source, ValueSubject<T> target) {
    return source.subscribe(
        [target = std::move(target)](const T& value) mutable { target.send(value); });
}

} // namespace

CompositePlaybackEngine::CompositePlaybackEngine()
    : CompositePlaybackEngine(std::make_unique<MiniaudioPlaybackEngine>(),
                              std::make_unique<AVPlaybackEngine>()) {}

CompositePlaybackEngine::CompositePlaybackEngine(
    std::unique_ptr<AudioPlaybackEngine> miniaudioEngine,
    std::unique_ptr<AudioPlaybackEngine> avEngine)
    : miniaudioEngine_(std::move(miniaudioEngine)), avEngine_(std::move(avEngine)) {}

bool CompositePlaybackEngine::isMiniaudioFormat(const QByteArray& lowercasedExtension) {
    return std::find(miniaudioFormats.begin(), miniaudioFormats.end(),
                     std::string_view(lowercasedExtension)) != miniaudioFormats.end();
}

void CompositePlaybackEngine::load(const FileURL& url) {
    stop();
    const QByteArray extension = url.pathExtension().toLower();
    const bool takesMiniaudio = isMiniaudioFormat(extension);
    PlaybackLogger::log((takesMiniaudio ? QLatin1String("[COMPOSITE] Using miniaudio for .")
                                        : QLatin1String("[COMPOSITE] Using AVFoundation for .")) +
                        QString::fromUtf8(extension));
    activeEngine_ = &engineFor(extension);
    bindActiveEngine(*activeEngine_);
    activeEngine_->load(url);
    (takesMiniaudio ? avEngine_ : miniaudioEngine_)->prepare({}); // nothing is next there
}

void CompositePlaybackEngine::prepare(const FileURL& url) {
    engineFor(url.pathExtension().toLower()).prepare(url);
}

AudioPlaybackEngine& CompositePlaybackEngine::engineFor(const QByteArray& extension) const {
    return *(isMiniaudioFormat(extension) ? miniaudioEngine_ : avEngine_);
}

void CompositePlaybackEngine::play() {
    if (activeEngine_ != nullptr)
        activeEngine_->play();
}

void CompositePlaybackEngine::pause() {
    if (activeEngine_ != nullptr)
        activeEngine_->pause();
}

void CompositePlaybackEngine::stop() {
    // Before the subscriptions end, so that the engine's last values are forwarded.
    if (activeEngine_ != nullptr)
        activeEngine_->stop();
    cancellables_.clear();
    activeEngine_ = nullptr;
}

void CompositePlaybackEngine::seek(double seconds) {
    if (activeEngine_ != nullptr)
        activeEngine_->seek(seconds);
}

void CompositePlaybackEngine::setVolume(float volume) {
    miniaudioEngine_->setVolume(volume);
    avEngine_->setVolume(volume);
}

void CompositePlaybackEngine::setUpdateInterval(double seconds) {
    miniaudioEngine_->setUpdateInterval(seconds);
    avEngine_->setUpdateInterval(seconds);
}

void CompositePlaybackEngine::bindActiveEngine(const AudioPlaybackEngine& engine) {
    cancellables_.clear();
    cancellables_.push_back(forward(engine.isPlayingPublisher(), isPlayingSubject_));
    cancellables_.push_back(forward(engine.durationPublisher(), durationSubject_));
    cancellables_.push_back(forward(engine.currentTimePublisher(), currentTimeSubject_));
}

} // namespace tamsy
