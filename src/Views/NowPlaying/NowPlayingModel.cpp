#include "Views/NowPlaying/NowPlayingModel.h"

#include "Services/Artwork/FallbackCover.h"
#include "Views/NowPlaying/NowPlayingLog.h"

#include <chrono>
#include <utility>

namespace tamsy {
namespace {

constexpr double minTimeLogInterval = 0.5; // seconds

/// From a steady clock.
double steadySeconds() {
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch())
        .count();
}

} // namespace

NowPlayingModel::NowPlayingModel(QObject* parent) : QObject(parent) {
    lateMark_.setSingleShot(true);
    lateMark_.setTimerType(Qt::PreciseTimer);
    connect(&lateMark_, &QTimer::timeout, this, &NowPlayingModel::markLyrics);
    connect(&lyrics_, &LyricsPanelModel::lyricsLoaded, this, &NowPlayingModel::markLyrics);
}

void NowPlayingModel::setPlayer(PlayerViewModel* player) {
    if (player_ == player || player == nullptr)
        return;
    player_ = player;
    connect(player, &PlayerViewModel::currentURLChanged, this, &NowPlayingModel::changeTrack);
    connect(player, &PlayerViewModel::currentTimeChanged, this, &NowPlayingModel::handleTime);
    connect(player, &PlayerViewModel::currentArtworkChanged, this, &NowPlayingModel::imageChanged);
    connect(player, &PlayerViewModel::isUIVisibleChanged, this, &NowPlayingModel::markLyrics);
    Q_EMIT playerChanged();
    Q_EMIT imageChanged();
    updateCurrentTrack();
}

void NowPlayingModel::setLibrary(LibraryViewModel* library) {
    if (library_ == library || library == nullptr)
        return;
    library_ = library;
    connect(library, &LibraryViewModel::foldersChanged, this, &NowPlayingModel::updateCurrentTrack);
    Q_EMIT libraryChanged();
    updateCurrentTrack();
}

QImage NowPlayingModel::image() const {
    const QImage artwork = player_ ? player_->currentArtwork() : QImage();
    return artwork.isNull() ? fallbackCover() : artwork;
}

void NowPlayingModel::appear() {
    const FileURL url = player_->currentURL();
    if (!std::exchange(didAppearLogged_, true)) {
        NowPlayingLog::write(QStringLiteral("body onAppear"));
        NowPlayingLog::write(u"currentURL=" + (url.isEmpty()
                                                   ? QStringLiteral("nil")
                                                   : QString::fromUtf8(url.absoluteString())));
    }
    player_->ensureCurrentArtwork();
    if (!url.isEmpty())
        loadLyrics();
}

void NowPlayingModel::loadLyrics() {
    lyrics_.loadLyrics(player_->currentURL());
}

void NowPlayingModel::updateCurrentTrack() {
    const Track* track = player_ && library_ ? library_->findTrack(player_->currentURL()) : nullptr;
    const QString artist = track != nullptr ? track->artist : QString();
    if (std::exchange(artist_, artist) != artist)
        Q_EMIT currentTrackChanged();
}

void NowPlayingModel::changeTrack() {
    updateCurrentTrack();
    const FileURL url = player_->currentURL();
    NowPlayingLog::write(u"onChange currentURL -> " +
                         (url.isEmpty() ? QStringLiteral("nil") : url.lastPathComponentText()));
    loadLyrics();
    lyrics_.resetIndex();
    player_->ensureCurrentArtwork();
}

void NowPlayingModel::setIsShown(bool isShown) {
    if (std::exchange(isShown_, isShown) == isShown)
        return;
    Q_EMIT isShownChanged();
    markLyrics();
}

void NowPlayingModel::handleTime() {
    if (!isShown_ || !player_->isUIVisible())
        return;
    const double now = steadySeconds();
    if (now - lastTimeLogAt_ > minTimeLogInterval) {
        lastTimeLogAt_ = now;
        NowPlayingLog::write(
            QString::asprintf("time=%.3f dur=%.3f", player_->currentTime(), player_->duration()));
    }
    markLyrics();
}

// Also called when the time may have changed while hidden: a paused player sends no report that
// would mark the line later.
void NowPlayingModel::markLyrics() {
    if (!player_ || !isShown_ || !player_->isUIVisible())
        return;
    const double early = lyrics_.handleTime(player_->currentTime(), steadySeconds());
    if (early > 0)
        lateMark_.start(static_cast<int>(early * 1000) + 1);
}

} // namespace tamsy
