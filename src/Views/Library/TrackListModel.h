#pragma once

#include "ViewModels/LibraryViewModel.h"

#include <QAbstractListModel>
#include <QPointer>
#include <QVariant>
#include <QtQml/qqmlregistration.h>

namespace tamsy {

/// The library's filtered tracks as rows. Shares the library's memory and follows its changes.
class TrackListModel : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(tamsy::LibraryViewModel* library READ library WRITE setLibrary NOTIFY libraryChanged)

  public:
    using QAbstractListModel::QAbstractListModel;

    [[nodiscard]] LibraryViewModel* library() const { return library_; }
    void setLibrary(LibraryViewModel* library);

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

    /// The first row of the track with this identity, or -1.
    Q_INVOKABLE [[nodiscard]] int indexOf(const QString& trackId) const;

    /// The first row of a file, by its address, or -1.
    Q_INVOKABLE [[nodiscard]] int indexOfAddress(const QString& address) const;

    /// The identity of a row's track; empty outside the list.
    Q_INVOKABLE [[nodiscard]] QString idAt(int row) const;

    /// The address of the first track with this identity, for `PlayerViewModel::play`; undefined if
    /// there is none.
    Q_INVOKABLE [[nodiscard]] QVariant urlOf(const QString& trackId) const;

  Q_SIGNALS:
    void libraryChanged();

  private:
    void reload();

    QPointer<LibraryViewModel> library_;
    TrackRows tracks_;
};

} // namespace tamsy
