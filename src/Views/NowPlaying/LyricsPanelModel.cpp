#include "Views/NowPlaying/LyricsPanelModel.h"

#include "Platform/Threads/InterfaceThread.h"
#include "Services/Lyrics/LyricsReader.h"
#include "Utils/FileURL.h"
#include "Views/NowPlaying/NowPlayingLog.h"

#include <QPointer>

#include <algorithm>
#include <chrono>
#include <utility>

namespace tamsy {
namespace {

constexpr double minUpdateInterval = 0.15; // seconds

/// A bit longer than the 0.25 s between two time reports while the interface is visible.
constexpr std::chrono::milliseconds maxHiddenReset{300};

/// Longer than any real line, in UTF-16 units. A much longer one would take seconds to lay out.
constexpr qsizetype maxShownLength = 10'000;

/// Removes control characters, which would show as boxes: some tags end their text with NUL.
QString printable(QString line) {
    return line.removeIf(
        [](QChar unit) { return unit.category() == QChar::Other_Control && unit != u'\t'; });
}

} // namespace

LyricsPanelModel::LyricsPanelModel(std::shared_ptr<WorkerPool> workers, QObject* parent)
    : QAbstractListModel(parent), workers_(std::move(workers)) {
    showing_.setSingleShot(true);
    showing_.setInterval(maxHiddenReset);
    connect(&showing_, &QTimer::timeout, this, &LyricsPanelModel::showCurrentLine);
}

void LyricsPanelModel::loadLyrics(const FileURL& url) {
    if (url.isEmpty()) {
        setLyrics(Lyrics::empty);
        return;
    }
    NowPlayingLog::write(u"loadLyrics start: " + url.lastPathComponentText());
    workers_->start([panel = QPointer(this), url] {
        const Lyrics lyrics = LyricsReader().load(url);
        InterfaceThread::run([panel, lyrics] {
            if (panel.isNull())
                return;
            panel->setLyrics(lyrics);
            panel->resetIndex();
            NowPlayingLog::write(u"loadLyrics done: lines=" + QString::number(lyrics.lines.size()) +
                                 u", synced=" + (lyrics.isSynced ? u"true" : u"false"));
            Q_EMIT panel->lyricsLoaded();
        });
    });
}

double LyricsPanelModel::handleTime(double time, double now) {
    if (!lyrics_.isSynced)
        return 0;
    const double passed = now - lastLyricIndexUpdateAt_;
    if (passed <= minUpdateInterval)
        return std::max(minUpdateInterval - passed, 0.001);
    lastLyricIndexUpdateAt_ = now;
    updateCurrentLyricIndex(time);
    return 0;
}

void LyricsPanelModel::resetIndex() {
    setCurrentLyricIndex(0);
    if (shownLyricIndex_ != currentLyricIndex_)
        showing_.start();
}

void LyricsPanelModel::updateCurrentLyricIndex(double time) {
    const auto& lines = lyrics_.lines;
    for (qsizetype i = 0; i < lines.size(); ++i) {
        const bool hasBegun = lines.at(i).time <= time;
        const bool isLast = i + 1 == lines.size();
        if (hasBegun && (isLast || lines.at(i + 1).time > time)) {
            setCurrentLyricIndex(static_cast<int>(i));
            break;
        }
    }
    showCurrentLine();
}

int LyricsPanelModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : count();
}

QVariant LyricsPanelModel::data(const QModelIndex& index, int role) const {
    if (role != Qt::DisplayRole || !checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const QString& text = lyrics_.lines.at(index.row()).text;
    return printable(text.size() > maxShownLength ? text.left(maxShownLength) + u'…' : text);
}

QHash<int, QByteArray> LyricsPanelModel::roleNames() const {
    return {{Qt::DisplayRole, QByteArrayLiteral("line")}};
}

void LyricsPanelModel::setLyrics(const Lyrics& lyrics) {
    if (lyrics_ == lyrics)
        return;
    beginResetModel();
    lyrics_ = lyrics;
    showing_.stop();
    const int formerlyShown = std::exchange(shownLyricIndex_, 0);
    endResetModel();
    Q_EMIT lyricsChanged();
    if (formerlyShown != shownLyricIndex_)
        Q_EMIT shownLyricIndexChanged();
}

void LyricsPanelModel::showCurrentLine() {
    showing_.stop();
    if (std::exchange(shownLyricIndex_, currentLyricIndex_) != currentLyricIndex_)
        Q_EMIT shownLyricIndexChanged();
}

void LyricsPanelModel::setCurrentLyricIndex(int index) {
    if (std::exchange(currentLyricIndex_, index) != index)
        Q_EMIT currentLyricIndexChanged();
}

} // namespace tamsy
