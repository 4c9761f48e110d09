#include "Desktop/RemoteControls.h"

#include "Services/Artwork/ThumbnailFiles.h"
#include "ViewModels/LibraryViewModel.h"
#include "ViewModels/PlayerViewModel.h"

#include <algorithm>

namespace tamsy {
namespace {

/// The larger thumbnail, since lock screens show a large cover.
constexpr QByteArrayView coverSize("512");

/// The cover as a file that other programs can read; empty if there is none yet.
FileURL coverFile(const FileURL& track) {
    const QByteArray path =
        ThumbnailFiles(ThumbnailFiles::applicationSupportDirectory()).storedPath(track, coverSize);
    return path.isEmpty() ? FileURL() : FileURL::fromPath(path);
}

} // namespace

RemoteControls::RemoteControls(PlayerViewModel& player, LibraryViewModel& library, Program program)
    : player_(player), library_(library), program_(std::move(program)) {
    clearCachesOnChange();
}

void RemoteControls::clearCachesOnChange() {
    const auto forgetFile = [this] { currentFile_.reset(); };
    const auto forgetList = [this] { hasListedTracks_.reset(); };
    QObject::connect(&player_, &PlayerViewModel::currentURLChanged, &receiver_, forgetFile);
    // By then the cover's file has been written.
    QObject::connect(&player_, &PlayerViewModel::currentArtworkChanged, &receiver_, forgetFile);
    QObject::connect(&library_, &LibraryViewModel::foldersChanged, &receiver_, forgetFile);
    QObject::connect(&library_, &LibraryViewModel::filteredTracksChanged, &receiver_, forgetList);
}

const RemoteControls::CurrentFile& RemoteControls::currentFile() const {
    if (!currentFile_) {
        const FileURL& url = player_.currentURL();
        const Track* scanned = library_.findTrack(url);
        currentFile_ = {scanned != nullptr ? std::optional(*scanned) : std::nullopt,
                        coverFile(url)};
    }
    return *currentFile_;
}

bool RemoteControls::hasListedTracks() const {
    if (!hasListedTracks_)
        hasListedTracks_ = library_.hasFilteredTracks();
    return *hasListedTracks_;
}

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

/// Paused at the very start counts as stopped.
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
    const auto& [scanned, cover] = currentFile();
    track.artwork = cover;
    if (scanned) {
        track.artist = scanned->artist;
        track.album = scanned->album;
    }
    // The player's title is empty until the tags have been read.
    if (track.title.isEmpty())
        track.title = scanned ? scanned->title : track.url.nameWithoutExtensionText();
    return track;
}

bool RemoteControls::canSkip() const {
    if (player_.repeatOneEnabled())
        return !player_.currentURL().isEmpty(); // restarts the track
    if (player_.shuffleEnabled())
        return std::ranges::any_of(
            library_.folders(), [](const AudioFolder& folder) { return !folder.tracks.isEmpty(); });
    return hasListedTracks();
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
