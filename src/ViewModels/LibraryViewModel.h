#pragma once

#include "Models/AudioFolder.h"
#include "Services/Library/FolderLibraryService.h"
#include "Utils/ValueSubject.h"
#include "ViewModels/FolderPanel.h"
#include "ViewModels/TrackRows.h"

#include <QList>
#include <QObject>
#include <QUuid>

#include <memory>

namespace tamsy {

/// What the views show of the library: its folders, the selected one, the search text and the
/// tracks that these give. Selection and search text aren't stored. Interface thread only.
class LibraryViewModel : public QObject {
    Q_OBJECT
    Q_PROPERTY(QUuid selectedFolderId READ selectedFolderId WRITE setSelectedFolderId NOTIFY
                   selectedFolderIdChanged)
    Q_PROPERTY(bool hasSelectedFolder READ hasSelectedFolder NOTIFY filteredTracksChanged)
    Q_PROPERTY(QString searchText READ searchText WRITE setSearchText NOTIFY searchTextChanged)

  public:
    /// Takes over the service, shows its folders at once and selects the first of them.
    LibraryViewModel(std::unique_ptr<FolderLibraryService> service,
                     std::unique_ptr<FolderPanel> panel, QObject* parent = nullptr);
    ~LibraryViewModel() override;

    [[nodiscard]] const QList<AudioFolder>& folders() const { return folders_; }
    [[nodiscard]] QUuid selectedFolderId() const { return selectedFolderId_; }
    [[nodiscard]] QString searchText() const { return searchText_; }

    void setSelectedFolderId(const QUuid& id);
    void setSearchText(const QString& text);

    /// The first folder with the selected id; null if there is none. Valid until the next event.
    [[nodiscard]] const AudioFolder* selectedFolder() const;
    [[nodiscard]] bool hasSelectedFolder() const { return selectedFolder() != nullptr; }

    /// The selected folder's tracks whose title, artist or album contains the trimmed search text;
    /// all of them if it is blank. Computed at each call, linear in the folder's tracks.
    [[nodiscard]] TrackList filteredTracks() const;

    /// The same tracks as rows, without a copy of them.
    [[nodiscard]] TrackRows filteredRows() const;

    /// Whether there are filtered tracks. Stops at the first one.
    [[nodiscard]] bool hasFilteredTracks() const;

    /// The first track with this address in any folder; null if there is none. Valid until the next
    /// event.
    [[nodiscard]] const Track* findTrack(const FileURL& url) const;

    /// The tracks of all folders, in folder order.
    [[nodiscard]] TrackList allTracks() const;

    /// Asks for a folder and adds it. A folder that can't be added changes nothing.
    Q_INVOKABLE void addFolderViaPanel();

    /// Adds the folder at `url`; selects the first folder if none is selected.
    void addFolder(const FileURL& url);

    /// Removes the folder; if it was selected, nothing is selected afterwards.
    Q_INVOKABLE void removeFolder(const QUuid& id);

    Q_INVOKABLE void rescanFolder(const QUuid& id);

  Q_SIGNALS:
    void foldersChanged();
    void selectedFolderIdChanged();
    void searchTextChanged();

    /// Anything that `filteredTracks` depends on has changed.
    void filteredTracksChanged();

  private:
    void setFolders(const QList<AudioFolder>& folders);
    void selectFirstFolderIfNoneIsSelected();

    QList<AudioFolder> folders_;
    QUuid selectedFolderId_; // null: no selection
    QString searchText_;
    std::unique_ptr<FolderLibraryService> service_;
    std::unique_ptr<FolderPanel> panel_;
    Subscriptions cancellables_;
};

} // namespace tamsy
