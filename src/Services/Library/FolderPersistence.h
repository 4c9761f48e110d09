#pragma once

#include "Models/Track.h"

#include <QByteArray>
#include <QList>
#include <QUuid>

#include <optional>
#include <vector>

namespace tamsy {

class LibraryDocument;
class UserDefaults;

/// A stored folder.
struct FolderRecord {
    QUuid id;
    QByteArray data;                 ///< the bookmark's bytes
    std::optional<TrackList> tracks; ///< absent until the folder's first scan has finished
};

/// Stores the user's folders and their tracks as one JSON document in the user defaults. It keeps
/// nothing in memory: each change reads the whole document, modifies it and stores it again, so the
/// document is complete after every operation. Interface thread only.
///
/// A document that can't be decoded counts as empty. It stays untouched until the next change,
/// which moves it aside. While the document can't be read it counts as empty too, and no change is
/// stored. The document before a removal, or before a scan that loses more than half of a folder's
/// tracks, is kept as "….previous".
class FolderPersistence {
  public:
    static constexpr auto defaultsKey = "FolderLibraryService.Bookmarks";

    /// What `saveBookmark` stored.
    struct SavedBookmark {
        QUuid id;
        QByteArray data;
    };

    /// `defaults` must outlive this object.
    explicit FolderPersistence(UserDefaults& defaults) : defaults_(defaults) {}

    /// Adds an entry without tracks for `folder`. Returns nothing and stores nothing if it isn't a
    /// folder that can be opened or if the document can't be read.
    [[nodiscard]] std::optional<SavedBookmark> saveBookmark(const FileURL& folder);

    /// Replaces the tracks of the entry `folderId`. Writes nothing if there is no such entry.
    void saveTracks(QUuid folderId, const TrackList& tracks);

    /// Removes every entry with this id.
    void removeRecord(QUuid id);

    /// All entries in stored order, except those whose bookmark isn't valid base64; these stay
    /// stored.
    [[nodiscard]] QList<FolderRecord> loadRecords();

    /// The folders' addresses, in order; nothing for one that is gone. One that takes longer to
    /// answer than a start can wait is taken to be where it was.
    [[nodiscard]] static std::vector<std::optional<FileURL>>
    resolveBookmarks(const QList<FolderRecord>& records);

  private:
    [[nodiscard]] LibraryDocument loadRaw();
    bool saveRaw(const LibraryDocument& document);

    UserDefaults& defaults_;
};

} // namespace tamsy
