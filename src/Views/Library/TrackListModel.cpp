#include "Views/Library/TrackListModel.h"

#include <QUuid>

namespace tamsy {
namespace {

enum Role { TrackId = Qt::UserRole, Address, Title, Artist, Album, Duration };

} // namespace

void TrackListModel::setLibrary(LibraryViewModel* library) {
    if (library_ == library)
        return;
    if (library_)
        library_->disconnect(this);
    library_ = library;
    if (library_)
        connect(library_, &LibraryViewModel::filteredTracksChanged, this, &TrackListModel::reload);
    reload();
    Q_EMIT libraryChanged();
}

void TrackListModel::reload() {
    TrackRows tracks = library_ ? library_->filteredRows() : TrackRows();
    // The rows, and the scroll position, stay if these tracks haven't changed.
    if (tracks == tracks_)
        return;
    beginResetModel();
    tracks_ = std::move(tracks);
    endResetModel();
}

int TrackListModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : tracks_.size();
}

QVariant TrackListModel::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const Track& track = tracks_.at(index.row());
    switch (role) {
    case TrackId:
        return track.id.toString();
    case Address:
        return QString::fromUtf8(track.url.absoluteString());
    case Title:
        return track.title;
    case Artist:
        return track.artist;
    case Album:
        return track.album;
    case Duration:
        return track.durationFormatted();
    default:
        return {};
    }
}

QHash<int, QByteArray> TrackListModel::roleNames() const {
    return {{TrackId, "trackId"}, {Address, "address"}, {Title, "title"},
            {Artist, "artist"},   {Album, "album"},     {Duration, "duration"}};
}

int TrackListModel::indexOf(const QString& trackId) const {
    return tracks_.indexOf(QUuid(trackId));
}

int TrackListModel::indexOfAddress(const QString& address) const {
    const FileURL url = FileURL::fromAbsoluteString(address.toUtf8()).value_or(FileURL());
    for (int row = 0; row < tracks_.size(); ++row) {
        if (tracks_.at(row).url == url)
            return row;
    }
    return -1;
}

QString TrackListModel::idAt(int row) const {
    return row >= 0 && row < tracks_.size() ? tracks_.at(row).id.toString() : QString();
}

QVariant TrackListModel::urlOf(const QString& trackId) const {
    const int row = indexOf(trackId);
    return row < 0 ? QVariant() : QVariant::fromValue(tracks_.at(row).url);
}

} // namespace tamsy
