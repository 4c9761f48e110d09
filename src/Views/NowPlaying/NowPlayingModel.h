#pragma once

#include "ViewModels/LibraryViewModel.h"
#include "ViewModels/PlayerViewModel.h"
#include "Views/NowPlaying/LyricsPanelModel.h"

#include <QImage>
#include <QObject>
#include <QPointer>
#include <QString>
#include <QTimer>
#include <QtQml/qqmlregistration.h>

namespace tamsy {

/// What the Now Playing window shows in addition to the player's state. Interface thread.
class NowPlayingModel : public QObject {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(tamsy::PlayerViewModel* player READ player WRITE setPlayer NOTIFY playerChanged)
    Q_PROPERTY(tamsy::LibraryViewModel* library READ library WRITE setLibrary NOTIFY libraryChanged)
    /// The current track's artist; empty if the library doesn't contain the current file.
    Q_PROPERTY(QString artist READ artist NOTIFY currentTrackChanged)
    /// The current cover, else the fallback cover, else null.
    Q_PROPERTY(QImage image READ image NOTIFY imageChanged)
    Q_PROPERTY(bool hasImage READ hasImage NOTIFY imageChanged)
    Q_PROPERTY(tamsy::LyricsPanelModel* lyrics READ lyrics CONSTANT)
    /// Whether the window is shown. While it isn't, the time has no effect.
    Q_PROPERTY(bool isShown READ isShown WRITE setIsShown NOTIFY isShownChanged)

  public:
    explicit NowPlayingModel(QObject* parent = nullptr);

    [[nodiscard]] PlayerViewModel* player() const { return player_; }
    void setPlayer(PlayerViewModel* player);
    [[nodiscard]] LibraryViewModel* library() const { return library_; }
    void setLibrary(LibraryViewModel* library);

    [[nodiscard]] QString artist() const { return artist_; }
    [[nodiscard]] QImage image() const;
    [[nodiscard]] bool hasImage() const { return !image().isNull(); }

    [[nodiscard]] LyricsPanelModel* lyrics() { return &lyrics_; }

    [[nodiscard]] bool isShown() const { return isShown_; }
    void setIsShown(bool isShown);

    /// Reloads the current track's lyrics.
    Q_INVOKABLE void loadLyrics();

    /// Call this each time the window is shown.
    Q_INVOKABLE void appear();

  Q_SIGNALS:
    void playerChanged();
    void libraryChanged();
    void currentTrackChanged();
    void imageChanged();
    void isShownChanged();

  private:
    void updateCurrentTrack();
    void changeTrack();
    void handleTime();
    void markLyrics();

    QPointer<PlayerViewModel> player_;
    QPointer<LibraryViewModel> library_;
    QString artist_;
    LyricsPanelModel lyrics_;
    QTimer lateMark_; // in case no further time report comes
    bool isShown_ = true;
    bool didAppearLogged_ = false;
    double lastTimeLogAt_ = 0; // seconds of a steady clock
};

} // namespace tamsy
