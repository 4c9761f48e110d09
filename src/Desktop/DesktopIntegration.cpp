#include "Desktop/DesktopIntegration.h"

#include "ViewModels/LibraryViewModel.h"
#include "ViewModels/PlayerViewModel.h"

#include <QGuiApplication>

namespace tamsy {
namespace {

MediaPlayerIdentity identity() {
    // The formats that the engines play, by freedesktop.org's shared MIME-info database.
    const QStringList fileTypes{
        QStringLiteral("audio/mpeg"),         QStringLiteral("audio/x-wav"),
        QStringLiteral("audio/flac"),         QStringLiteral("audio/ogg"),
        QStringLiteral("audio/x-vorbis+ogg"), QStringLiteral("audio/x-flac+ogg"),
        QStringLiteral("audio/mp4"),          QStringLiteral("audio/aac"),
        QStringLiteral("audio/x-aiff"),       QStringLiteral("audio/x-caf")};
    const QString desktopEntry = QGuiApplication::desktopFileName();
    return {QGuiApplication::applicationDisplayName(), desktopEntry, fileTypes, desktopEntry};
}

} // namespace

DesktopIntegration::DesktopIntegration(PlayerViewModel& player, LibraryViewModel& library,
                                       RemoteControls::Program program, QObject* parent)
    : QObject(parent),
      controls_(player, library, std::move(program)),
      mpris_(controls_, identity()),
      sleepInhibitor_(QGuiApplication::applicationDisplayName(), QStringLiteral("播放")) {
    announceChanges(player, library);
    announceJumps(player);
    stayAwake(player);
}

void DesktopIntegration::announceChanges(const PlayerViewModel& player,
                                         const LibraryViewModel& library) {
    const auto follow = [this](const auto* source, auto change) {
        connect(source, change, &mpris_, &MprisService::noteChange);
    };
    follow(&player, &PlayerViewModel::currentURLChanged);
    follow(&player, &PlayerViewModel::currentTitleChanged);
    follow(&player, &PlayerViewModel::currentArtworkChanged);
    follow(&player, &PlayerViewModel::isPlayingChanged);
    follow(&player, &PlayerViewModel::durationChanged);
    follow(&player, &PlayerViewModel::volumeChanged);
    follow(&player, &PlayerViewModel::shuffleEnabledChanged);
    follow(&player, &PlayerViewModel::repeatOneEnabledChanged);
    follow(&library, &LibraryViewModel::filteredTracksChanged);
    follow(&library, &LibraryViewModel::foldersChanged);
}

/// Announces seeks and starts. Nothing else tells other programs that a track plays from its start
/// again.
void DesktopIntegration::announceJumps(const PlayerViewModel& player) {
    connect(&player, &PlayerViewModel::pendingSeekTargetChanged, &mpris_, [this, &player] {
        if (player.pendingSeekTarget())
            mpris_.noteJump();
    });
    connect(&player, &PlayerViewModel::isPlayingChanged, &mpris_, [this, &player] {
        if (player.isPlaying())
            mpris_.noteJump();
    });
}

void DesktopIntegration::stayAwake(const PlayerViewModel& player) {
    const auto follow = [this, &player] { sleepInhibitor_.setInhibiting(player.isPlaying()); };
    connect(&player, &PlayerViewModel::isPlayingChanged, &sleepInhibitor_, follow);
    follow();
}

} // namespace tamsy
