#pragma once

#include "Platform/Desktop/Visibility.h"
#include "Playback/AudioPlaybackEngine.h"
#include "Services/Artwork/ArtworkLoader.h"
#include "Services/Metadata/MetadataReader.h"
#include "Utils/FileURL.h"
#include "Utils/ValueSubject.h"
#include "ViewModels/LibraryViewModel.h"
#include "ViewModels/NowPlayingWindow.h"

#include <QImage>
#include <QObject>
#include <QPointer>
#include <QString>

#include <memory>
#include <optional>

namespace tamsy {

/// What a player uses and doesn't own; all of it outlives the player.
struct PlayerSurroundings {
    Visibility* visibility = nullptr;             ///< without it the interface counts as visible
    ArtworkLoader* artworkLoader = nullptr;       ///< without it the program's own
    NowPlayingWindowFactory makeNowPlayingWindow; ///< without it there is no such window
};

/// The one object that the views observe for everything about playback, and the owner of the
/// engine: its state, seeking, the end of a track, what plays next, the current title and cover,
/// and how often time is reported. Times are seconds. Nothing of it is kept across runs. Interface
/// thread only.
class PlayerViewModel : public QObject {
    Q_OBJECT
    Q_PROPERTY(QString currentAddress READ currentAddress NOTIFY currentURLChanged)
    Q_PROPERTY(QString currentTitle READ currentTitle NOTIFY currentTitleChanged)
    Q_PROPERTY(bool isPlaying READ isPlaying NOTIFY isPlayingChanged)
    Q_PROPERTY(double duration READ duration NOTIFY durationChanged)
    Q_PROPERTY(double currentTime READ currentTime NOTIFY currentTimeChanged)
    Q_PROPERTY(QImage currentArtwork READ currentArtwork NOTIFY currentArtworkChanged)
    Q_PROPERTY(bool isUIVisible READ isUIVisible NOTIFY isUIVisibleChanged)
    Q_PROPERTY(bool isSeeking READ isSeeking WRITE setIsSeeking NOTIFY isSeekingChanged)
    Q_PROPERTY(float volume READ volume WRITE setVolume NOTIFY volumeChanged)
    Q_PROPERTY(bool shuffleEnabled READ shuffleEnabled NOTIFY shuffleEnabledChanged)
    Q_PROPERTY(bool repeatOneEnabled READ repeatOneEnabled NOTIFY repeatOneEnabledChanged)

  public:
    /// Takes over the engine and binds to its values at once.
    explicit PlayerViewModel(std::unique_ptr<AudioPlaybackEngine> engine,
                             PlayerSurroundings surroundings = {}, QObject* parent = nullptr);
    ~PlayerViewModel() override;

    [[nodiscard]] const FileURL& currentURL() const {
        return currentURL_;
    } ///< empty before the first
    [[nodiscard]] QString currentAddress() const;
    [[nodiscard]] QString currentTitle() const { return currentTitle_; }
    [[nodiscard]] bool isPlaying() const { return isPlaying_; }
    [[nodiscard]] double duration() const { return duration_; }
    [[nodiscard]] double currentTime() const { return currentTime_; }
    [[nodiscard]] QImage currentArtwork() const {
        return currentArtwork_;
    } ///< null before the first
    [[nodiscard]] bool isUIVisible() const { return isUIVisible_.value(); }
    [[nodiscard]] bool isSeeking() const { return isSeeking_.value(); }
    [[nodiscard]] std::optional<double> pendingSeekTarget() const {
        return pendingSeekTarget_.value();
    }
    [[nodiscard]] float volume() const { return volume_; }
    [[nodiscard]] bool shuffleEnabled() const { return shuffleEnabled_; }
    [[nodiscard]] bool repeatOneEnabled() const { return repeatOneEnabled_; }

    /// A seek gesture is under way; whoever tracks the drag sets it.
    void setIsSeeking(bool seeking);

    /// Where playback is, also while nobody can see it and `currentTime` stands still.
    [[nodiscard]] double position() const;

    /// Linear gain, 0 to 1. Every set reaches the engine, an equal one too.
    void setVolume(float volume);

    /// Gives the player the lists that it steps through. They are not owned.
    Q_INVOKABLE void attachLibrary(tamsy::LibraryViewModel* library);

    /// Starts a file. It can't fail: a file that can't be opened doesn't start.
    Q_INVOKABLE void play(const tamsy::FileURL& url);
    Q_INVOKABLE void togglePlayPause();

    /// Moves the position. The shown time jumps at once and holds until the engine reports a
    /// position near the target, or until the engine has had its time to do so.
    Q_INVOKABLE void seek(double seconds);

    Q_INVOKABLE void next();
    Q_INVOKABLE void previous();
    Q_INVOKABLE void toggleShuffle();
    Q_INVOKABLE void toggleRepeatOne();

    /// Fills in the current cover if there is a track and no picture yet, with the fallback cover
    /// if the track has none.
    Q_INVOKABLE void ensureCurrentArtwork();

    /// Brings the large window to the front. It is made once and kept; closed, it is only hidden.
    Q_INVOKABLE void showNowPlayingWindow(tamsy::PlayerViewModel* playerVM,
                                          tamsy::LibraryViewModel* libraryVM);

    /// Ends the large window, which must not outlive what it is made with.
    void endNowPlayingWindow() { nowPlayingWindow_.reset(); }

  Q_SIGNALS:
    void currentURLChanged();
    void currentTitleChanged();
    void isPlayingChanged();
    void durationChanged();
    void currentTimeChanged();
    void currentArtworkChanged();
    void isUIVisibleChanged();
    void isSeekingChanged();
    void pendingSeekTargetChanged();
    void volumeChanged();
    void shuffleEnabledChanged();
    void repeatOneEnabledChanged();

  private:
    // PlayerViewModel.cpp
    void setCurrentTitle(const QString& title);
    void setCurrentTime(double seconds);
    void setPendingSeekTarget(std::optional<double> seconds);
    void scheduleLockRelease();
    void startEngine(const FileURL& url);

    // PlayerViewModelBinding.cpp
    void bindEngine();
    void handleTime(double time, bool visible, std::optional<double> pending);
    void giveUpPendingSeek(unsigned seekNumber, unsigned startNumber);

    // PlayerViewModelNavigation.cpp
    void detectTrackEnds();
    void handleReport(double time, double duration, bool playing);
    void handleTrackEnd();
    void restartCurrentTrack();
    void stepBy(int step, const QString& logPrefix);
    [[nodiscard]] TrackList getVisibleTrackList() const;
    [[nodiscard]] std::optional<FileURL> getNextTrackInVisibleList(int step) const;
    [[nodiscard]] std::optional<FileURL>
    getRandomTrackFromCurrentFolder(const FileURL& excluding) const;

    // PlayerViewModelTrackInformation.cpp
    void loadTrackInformation(const FileURL& url);
    void showArtwork(const FileURL& url, QImage (*fallback)());
    void setCurrentArtwork(const QImage& image);

    // PlayerViewModelVisibility.cpp
    void wireVisibilityObservers();
    void recomputeVisibilityAndAdjust();

    FileURL currentURL_;
    QString currentTitle_;
    bool isPlaying_ = false;
    double duration_ = 0;
    double currentTime_ = 0;
    QImage currentArtwork_;
    ValueSubject<bool> isUIVisible_{true};
    ValueSubject<bool> isSeeking_{false};
    ValueSubject<std::optional<double>> pendingSeekTarget_{std::nullopt};
    float volume_ = 0.5F;
    bool shuffleEnabled_ = false;
    bool repeatOneEnabled_ = false;
    bool isHandlingTrackEnd_ = false; // a guard against re-entry over time, not against threads
    QPointer<LibraryViewModel> library_;
    std::unique_ptr<AudioPlaybackEngine> engine_;
    Subscriptions cancellables_;
    MetadataReader metadataReader_;
    const PlayerSurroundings surroundings_;
    std::unique_ptr<NowPlayingWindow> nowPlayingWindow_;
    double lastBufferedTime_ = 0; // the position while nobody can see it
    unsigned seekNumber_ = 0;
    unsigned startNumber_ = 0; // tells two playbacks of one file apart
};

} // namespace tamsy
