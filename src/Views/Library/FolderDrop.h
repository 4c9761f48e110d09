#pragma once

#include "ViewModels/LibraryViewModel.h"

#include <QList>
#include <QObject>
#include <QPointer>
#include <QUrl>
#include <QtQml/qqmlregistration.h>

namespace tamsy {

/// Handles drops on the window: local folders are added unless the library has them, everything
/// else is refused.
class FolderDrop : public QObject {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(tamsy::LibraryViewModel* library READ library WRITE setLibrary NOTIFY libraryChanged)

  public:
    using QObject::QObject;

    [[nodiscard]] LibraryViewModel* library() const { return library_; }
    void setLibrary(LibraryViewModel* library);

    /// Whether any of `urls` is a folder that can be opened.
    Q_INVOKABLE [[nodiscard]] static bool holdsFolder(const QList<QUrl>& urls);

    Q_INVOKABLE void add(const QList<QUrl>& urls) const;

  Q_SIGNALS:
    void libraryChanged();

  private:
    QPointer<LibraryViewModel> library_;
};

} // namespace tamsy
