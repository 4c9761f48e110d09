#include "Views/Library/FolderListModel.h"

#include <algorithm>

namespace tamsy {
namespace {

enum Role { FolderId = Qt::UserRole, DisplayName };

} // namespace

void FolderListModel::setLibrary(LibraryViewModel* library) {
    if (library_ == library)
        return;
    if (library_)
        library_->disconnect(this);
    library_ = library;
    if (library_) {
        connect(library_, &LibraryViewModel::foldersChanged, this, &FolderListModel::reload);
        connect(library_, &LibraryViewModel::selectedFolderIdChanged, this,
                &FolderListModel::selectedRowChanged);
    }
    reload();
    Q_EMIT libraryChanged();
}

void FolderListModel::reload() {
    QList<Row> rows;
    if (library_) {
        for (const AudioFolder& folder : library_->folders())
            rows.append({folder.id, folder.displayName});
    }
    // A finished scan changes tracks but not the rows.
    if (rows == rows_)
        return;
    beginResetModel();
    rows_ = std::move(rows);
    endResetModel();
    Q_EMIT selectedRowChanged();
}

int FolderListModel::selectedRow() const {
    const QUuid id = library_ ? library_->selectedFolderId() : QUuid();
    const auto found = std::find_if(rows_.cbegin(), rows_.cend(),
                                    [&](const Row& row) { return row.folderId == id; });
    return found == rows_.cend() ? -1 : static_cast<int>(found - rows_.cbegin());
}

int FolderListModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(rows_.size());
}

QVariant FolderListModel::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const Row& row = rows_.at(index.row());
    switch (role) {
    case FolderId:
        return row.folderId;
    case DisplayName:
        return row.displayName;
    default:
        return {};
    }
}

QHash<int, QByteArray> FolderListModel::roleNames() const {
    return {{FolderId, "folderId"}, {DisplayName, "displayName"}};
}

QUuid FolderListModel::idAt(int row) const {
    return row >= 0 && row < rows_.size() ? rows_.at(row).folderId : QUuid();
}

} // namespace tamsy
