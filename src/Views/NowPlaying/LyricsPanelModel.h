#pragma once

#include "Models/Lyrics.h"
#include "Platform/Threads/WorkerPool.h"

#include <QAbstractListModel>
#include <QTimer>
#include <QtQml/qqmlregistration.h>

#include <memory>

namespace tamsy {

class FileURL;

/// The current track's lyrics as rows, and which of them is current. Interface thread; lyrics are
/// read in the background.
class LyricsPanelModel : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The window's model makes the one panel.")
    Q_PROPERTY(int count READ count NOTIFY lyricsChanged)
    Q_PROPERTY(bool isSynced READ isSynced NOTIFY lyricsChanged)
    /// The row of the current line; meaningless unless the lyrics are synced.
    Q_PROPERTY(int currentLyricIndex READ currentLyricIndex NOTIFY currentLyricIndexChanged)
    /// The row that the views mark: the current one. A reset is delayed until the next time update,
    /// at most 0.3 s, so that reloaded lyrics don't visibly jump to their start and back.
    Q_PROPERTY(int shownLyricIndex READ shownLyricIndex NOTIFY shownLyricIndexChanged)

  public:
    /// Lyrics are read on `workers`.
    explicit LyricsPanelModel(std::shared_ptr<WorkerPool> workers = std::make_shared<WorkerPool>(),
                              QObject* parent = nullptr);

    [[nodiscard]] int count() const { return static_cast<int>(lyrics_.lines.size()); }
    [[nodiscard]] bool isSynced() const { return lyrics_.isSynced; }
    [[nodiscard]] int currentLyricIndex() const { return currentLyricIndex_; }
    [[nodiscard]] int shownLyricIndex() const { return shownLyricIndex_; }

    /// Reads the lyrics of `url`; the previous ones stay until then. An empty address clears them
    /// at once. If loads overlap, the one that finishes last counts.
    void loadLyrics(const FileURL& url);

    /// Marks the first line until the next time update.
    void resetIndex();

    /// Updates the current line for the playback time, in seconds, at `now`, in seconds of any
    /// clock. Does so at most once in 0.15 s: returns by how many seconds it is too early, else 0.
    double handleTime(double time, double now);

    /// Marks the line for `time`, in seconds. Before the first line's time the mark doesn't change.
    void updateCurrentLyricIndex(double time);

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

  Q_SIGNALS:
    void lyricsChanged();
    void currentLyricIndexChanged();
    void shownLyricIndexChanged();
    /// A load has finished, and the first line is marked.
    void lyricsLoaded();

  private:
    void setLyrics(const Lyrics& lyrics);
    void setCurrentLyricIndex(int index);
    void showCurrentLine();

    const std::shared_ptr<WorkerPool> workers_;
    Lyrics lyrics_;
    int currentLyricIndex_ = 0;
    int shownLyricIndex_ = 0;
    QTimer showing_;                    // runs while a reset is delayed
    double lastLyricIndexUpdateAt_ = 0; // in seconds of the caller's clock
};

} // namespace tamsy
