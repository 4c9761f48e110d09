#pragma once

#include "ViewModels/LibraryViewModel.h"

#include <QAbstractListModel>
#include <QPointer>
#include <QUuid>
#include <QtQml/qqmlregistration.h>

namespace tamsy {

/// The library's folders as rows, in the order in which they were added. Follows the library.
class FolderListModel : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(tamsy::LibraryViewModel* library READ library WRITE setLibrary NOTIFY libraryChanged)
    Q_PROPERTY(int selectedRow READ selectedRow NOTIFY selectedRowChanged)

  public:
    using QAbstractListModel::QAbstractListModel;

    [[nodiscard]] LibraryViewModel* library() const { return library_; }
    void setLibrary(LibraryViewModel* library);

    /// The row of the selected folder, or -1.
    [[nodiscard]] int selectedRow() const;

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

    /// The identity of a row's folder; null outside the list.
    Q_INVOKABLE [[nodiscard]] QUuid idAt(int row) const;

  Q_SIGNALS:
    void libraryChanged();
    void selectedRowChanged();

  private:
    struct Row {
        QUuid folderId;
        QString displayName;
        friend bool operator==(const Row&, const Row&) = default;
    };
    void reload();

    QPointer<LibraryViewModel> library_;
    QList<Row> rows_;
};

} // namespace tamsy
