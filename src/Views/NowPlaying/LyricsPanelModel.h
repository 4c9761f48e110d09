#pragma once

#include "Models/Lyrics.h"

#include <QAbstractListModel>
#include <QTimer>
#include <QtQml/qqmlregistration.h>

namespace tamsy {

class FileURL;

/// The lyrics of the current track as rows, and which of them is being sung. Interface thread; the
/// reading happens in the background.
class LyricsPanelModel : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The window's model makes the one panel.")
    Q_PROPERTY(int count READ count NOTIFY lyricsChanged)
    Q_PROPERTY(bool isSynced READ isSynced NOTIFY lyricsChanged)
    /// Row of the current line; without a meaning while the lyrics aren't synced.
    Q_PROPERTY(int currentLyricIndex READ currentLyricIndex NOTIFY currentLyricIndexChanged)
    /// Row that the views mark: the current one. A reset waits for the next look at the time, at
    /// most 0.3 s, so that nobody sees lyrics that are only read anew run to their start and back.
    Q_PROPERTY(int shownLyricIndex READ shownLyricIndex NOTIFY shownLyricIndexChanged)

  public:
    explicit LyricsPanelModel(QObject* parent = nullptr);

    [[nodiscard]] int count() const { return static_cast<int>(lyrics_.lines.size()); }
    [[nodiscard]] bool isSynced() const { return lyrics_.isSynced; }
    [[nodiscard]] int currentLyricIndex() const { return currentLyricIndex_; }
    [[nodiscard]] int shownLyricIndex() const { return shownLyricIndex_; }

    /// Takes the lyrics of `url` once they are read; the ones there are stay until then. An empty
    /// address has none, at once. Loads may overlap; the one that ends last counts.
    void loadLyrics(const FileURL& url);

    /// Marks the first line, until the time says otherwise.
    void resetIndex();

    /// The playback time, in seconds, at a moment `now`, in seconds of any clock. Synced lyrics are
    /// looked through at most once in 0.15 s: gives the seconds by which it is too early, else 0.
    double handleTime(double time, double now);

    /// Marks the line that is sung at `time`, in seconds. Before the first line's time the mark
    /// stays where it is.
    void updateCurrentLyricIndex(double time);

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

  Q_SIGNALS:
    void lyricsChanged();
    void currentLyricIndexChanged();
    void shownLyricIndexChanged();
    /// A load has ended, and the first line is marked.
    void lyricsLoaded();

  private:
    void setLyrics(const Lyrics& lyrics);
    void setCurrentLyricIndex(int index);
    void showCurrentLine();

    Lyrics lyrics_;
    int currentLyricIndex_ = 0;
    int shownLyricIndex_ = 0;
    QTimer showing_;                    // runs while a reset isn't shown yet
    double lastLyricIndexUpdateAt_ = 0; // in seconds of the caller's clock
};

} // namespace tamsy
