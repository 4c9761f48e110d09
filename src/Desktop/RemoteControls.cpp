#include "Desktop/RemoteControls.h"

#include "Services/ThumbnailFiles.h"
#include "ViewModels/LibraryViewModel.h"
#include "ViewModels/PlayerViewModel.h"

#include <QFile>

#include <algorithm>

namespace tamsy {
namespace {

/// The cover's larger size; panels and lock screens show it big.
constexpr QByteArrayView coverSize("512");

/// The cover as a file for others to read, if there is one already.
FileURL coverFile(const FileURL& track) {
    const QByteArray path =
        ThumbnailFiles(ThumbnailFiles::applicationSupportDirectory()).diskPath(track, coverSize);
    return QFile::exists(QFile::decodeName(path)) ? FileURL::fromPath(path) : FileURL();
}

} // namespace

RemoteControls::RemoteControls(PlayerViewModel& player, LibraryViewModel& library, Program program)
    : player_(player), library_(library), program_(std::move(program)) {}

MediaState RemoteControls::state() const {
    MediaState state;
    state.status = status();
    if (!player_.currentURL().isEmpty())
        state.track = currentTrack();
    state.volume = static_cast<double>(player_.volume());
    state.shuffles = player_.shuffleEnabled();
    state.repeatsTrack = player_.repeatOneEnabled();
    state.canSkip = canSkip();
    return state;
}

/// A pause at the very start is what a stop leaves behind.
MediaState::Status RemoteControls::status() const {
    if (player_.isPlaying())
        return MediaState::Status::Playing;
    return player_.position() > 0 ? MediaState::Status::Paused : MediaState::Status::Stopped;
}

MediaTrack RemoteControls::currentTrack() const {
    MediaTrack track;
    track.url = player_.currentURL();
    track.title = player_.currentTitle();
    track.duration = player_.duration();
    track.artwork = coverFile(track.url);
    const Track* scanned = library_.findTrack(track.url);
    if (scanned != nullptr) {
        track.artist = scanned->artist;
        track.album = scanned->album;
    }
    // The player's own title comes when the tags have been read.
    if (track.title.isEmpty())
        track.title = scanned != nullptr ? scanned->title : track.url.nameWithoutExtensionText();
    return track;
}

bool RemoteControls::canSkip() const {
    if (player_.repeatOneEnabled())
        return !player_.currentURL().isEmpty(); // which it begins again
    if (player_.shuffleEnabled())
        return std::ranges::any_of(
            library_.folders(), [](const AudioFolder& folder) { return !folder.tracks.isEmpty(); });
    return library_.hasFilteredTracks();
}

double RemoteControls::position() const {
    return player_.position();
}

void RemoteControls::play() {
    if (!player_.isPlaying())
        player_.togglePlayPause();
}

void RemoteControls::pause() {
    if (player_.isPlaying())
        player_.togglePlayPause();
}

void RemoteControls::playPause() {
    player_.togglePlayPause();
}

void RemoteControls::stop() {
    pause();
    if (player_.position() > 0)
        player_.seek(0);
}

void RemoteControls::next() {
    player_.next();
}

void RemoteControls::previous() {
    player_.previous();
}

void RemoteControls::seek(double seconds) {
    player_.seek(seconds);
}

void RemoteControls::setVolume(double gain) {
    player_.setVolume(static_cast<float>(gain));
}

void RemoteControls::setShuffles(bool shuffles) {
    if (player_.shuffleEnabled() != shuffles)
        player_.toggleShuffle();
}

void RemoteControls::setRepeatsTrack(bool repeats) {
    if (player_.repeatOneEnabled() != repeats)
        player_.toggleRepeatOne();
}

bool RemoteControls::open(const FileURL& url) {
    if (!AudioFolder::isSupportedExtension(url.pathExtension().toLower()))
        return false;
    player_.play(url);
    return true;
}

void RemoteControls::raise() {
    program_.raise();
}

void RemoteControls::quit() {
    program_.quit();
}

} // namespace tamsy
