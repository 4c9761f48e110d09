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

#include <chrono>
#include <functional>
#include <memory>
#include <optional>

namespace tamsy {

/// What a player uses and doesn't own. All of it must outlive the player.
struct PlayerDependencies {
    /// Runs `action` on the interface thread after `delay`, unless `context` is gone by then.
    using RunAfter = std::function<void(std::chrono::milliseconds delay, QObject* context,
                                        std::function<void()> action)>;

    /// `RunAfter` by a precise timer.
    static void runOnTimer(std::chrono::milliseconds delay, QObject* context,
                           std::function<void()> action);

    Visibility* visibility = nullptr;       ///< null: the interface counts as visible
    ArtworkLoader* artworkLoader = nullptr; ///< null: the shared one
    NowPlayingWindowFactory makeNowPlayingWindow = nullptr; ///< empty: there is no such window
    RunAfter runAfter = runOnTimer;
};

/// Owns the engine, and is the one object that the views observe for everything about playback: its
/// state, seeking, the end of a track, what plays next, the current title and cover, and how often
/// time is reported. Times are in seconds. Nothing of it is stored. Interface thread only.
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
                             PlayerDependencies dependencies = {}, QObject* parent = nullptr);
    ~PlayerViewModel() override;

    /// Empty before the first file.
    [[nodiscard]] const FileURL& currentURL() const { return currentURL_; }
    [[nodiscard]] QString currentAddress() const;
    [[nodiscard]] QString currentTitle() const { return currentTitle_; }
    [[nodiscard]] bool isPlaying() const { return isPlaying_; }
    [[nodiscard]] double duration() const { return duration_; }
    [[nodiscard]] double currentTime() const { return currentTime_; }
    /// Null before the first cover.
    [[nodiscard]] QImage currentArtwork() const { return currentArtwork_; }
    [[nodiscard]] bool isUIVisible() const { return isUIVisible_.value(); }
    [[nodiscard]] bool isSeeking() const { return isSeeking_.value(); }
    [[nodiscard]] std::optional<double> pendingSeekTarget() const {
        return pendingSeekTarget_.value();
    }
    [[nodiscard]] float volume() const { return volume_; }
    [[nodiscard]] bool shuffleEnabled() const { return shuffleEnabled_; }
    [[nodiscard]] bool repeatOneEnabled() const { return repeatOneEnabled_; }

    /// Whether a seek gesture is under way. The view that tracks the drag sets it.
    void setIsSeeking(bool seeking);

    /// The playback position, kept up to date even while the interface is hidden and `currentTime`
    /// isn't.
    [[nodiscard]] double position() const;

    /// Linear gain, 0 to 1. Every call reaches the engine, even one that changes nothing.
    void setVolume(float volume);

    /// Sets the library whose lists the player steps through. It isn't owned.
    Q_INVOKABLE void attachLibrary(tamsy::LibraryViewModel* library);

    /// Starts a file. Never fails: a file that can't be opened just doesn't start.
    Q_INVOKABLE void play(const tamsy::FileURL& url);
    Q_INVOKABLE void togglePlayPause();

    /// Moves the position. The shown time jumps at once and stays there until the engine reports a
    /// position near the target, or doesn't in time.
    Q_INVOKABLE void seek(double seconds);

    Q_INVOKABLE void next();
    Q_INVOKABLE void previous();
    Q_INVOKABLE void toggleShuffle();
    Q_INVOKABLE void toggleRepeatOne();

    /// Loads the current cover if there is a track and no picture yet; the fallback cover if the
    /// track has none.
    Q_INVOKABLE void ensureCurrentArtwork();

    /// Brings the Now Playing window to the front. It is made once; closing it only hides it.
    Q_INVOKABLE void showNowPlayingWindow(tamsy::PlayerViewModel* playerVM,
                                          tamsy::LibraryViewModel* libraryVM);

    /// Destroys the Now Playing window, which must not outlive the QML engine that made it.
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
    void runAfter(std::chrono::milliseconds delay, std::function<void()> action);
    static void logToFile(const QString& message);

    // PlayerViewModelBinding.cpp
    void bindEngine();
    void handleTime(double time, bool visible, std::optional<double> pending);
    void giveUpPendingSeek(unsigned seekNumber, unsigned startNumber);

    // PlayerViewModelNavigation.cpp
    void detectTrackEnds();
    void handleReport(double time, double duration, bool playing);
    void handleTrackEnd();
    void prepareNextTrack();
    void restartCurrentTrack();
    void stepBy(int step, bool logs);
    void logState(QStringView repeatPrefix, QStringView currentPrefix) const;
    static void logList(QStringView countPrefix, QStringView tracksPrefix, const TrackList& list);
    [[nodiscard]] TrackList getVisibleTrackList() const;
    [[nodiscard]] std::optional<FileURL> getNextTrackInVisibleList(int step) const;
    [[nodiscard]] std::optional<FileURL>
    getRandomTrackFromCurrentFolder(const FileURL& excluding) const;

    // PlayerViewModelTrackInformation.cpp
    void loadTrackInformation(const FileURL& url);
    void showArtwork(const FileURL& url, QImage (*fallback)());
    [[nodiscard]] static QImage fallbackArtwork();
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
    bool isHandlingTrackEnd_ = false; // from a track's end until the next end may be handled
    QPointer<LibraryViewModel> library_;
    std::unique_ptr<AudioPlaybackEngine> engine_;
    Subscriptions cancellables_;
    MetadataReader metadataReader_;
    const PlayerDependencies dependencies_;
    std::unique_ptr<NowPlayingWindow> nowPlayingWindow_;
    double lastBufferedTime_ = 0; // the position while the interface is hidden
    unsigned seekNumber_ = 0;
    unsigned startNumber_ = 0;     // distinguishes two playbacks of one file
    bool hasPreparedNext_ = false; // since the current file was started
};

} // namespace tamsy
