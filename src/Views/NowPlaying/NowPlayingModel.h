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

/// What the Now Playing window shows beyond the player's own state. Interface thread.
class NowPlayingModel : public QObject {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(tamsy::PlayerViewModel* player READ player WRITE setPlayer NOTIFY playerChanged)
    Q_PROPERTY(tamsy::LibraryViewModel* library READ library WRITE setLibrary NOTIFY libraryChanged)
    /// The current track's artist; empty if the library doesn't hold the current file.
    Q_PROPERTY(QString artist READ artist NOTIFY currentTrackChanged)
    /// The current cover, else the fallback cover, else null.
    Q_PROPERTY(QImage image READ image NOTIFY imageChanged)
    Q_PROPERTY(bool hasImage READ hasImage NOTIFY imageChanged)
    Q_PROPERTY(tamsy::LyricsPanelModel* lyrics READ lyrics CONSTANT)
    /// Whether the window is up. While it isn't, the passing time changes nothing.
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

    /// Reads the current track's lyrics anew.
    Q_INVOKABLE void loadLyrics();

    /// To be called each time the window comes up.
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
    QTimer lateMark_; // where no further report of the time may come
    bool isShown_ = true;
    bool didAppearLogged_ = false;
    double lastTimeLogAt_ = 0; // in seconds of a steady clock
};

} // namespace tamsy
