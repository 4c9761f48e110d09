#pragma once

#include "Desktop/RemoteControls.h"
#include "Platform/Desktop/SleepInhibitor.h"
#include "Platform/Mpris/MprisService.h"

#include <QObject>

namespace tamsy {

/// Integrates the player with the desktop: remote controls on the session bus, which media keys use
/// too, and no suspending while music plays. Does nothing without a bus, and never waits for one.
/// Interface thread.
class DesktopIntegration : public QObject {
    Q_OBJECT

  public:
    /// The view models aren't owned and must outlive this object.
    DesktopIntegration(PlayerViewModel& player, LibraryViewModel& library,
                       RemoteControls::Program program, QObject* parent = nullptr);

  private:
    void announceChanges(const PlayerViewModel& player, const LibraryViewModel& library);
    void announceJumps(const PlayerViewModel& player);
    void stayAwake(const PlayerViewModel& player);

    RemoteControls controls_;
    MprisService mpris_;
    SleepInhibitor sleepInhibitor_;
};

} // namespace tamsy
