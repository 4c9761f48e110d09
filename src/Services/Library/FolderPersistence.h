#pragma once

#include "Models/Track.h"

#include <QByteArray>
#include <QList>
#include <QUuid>

#include <optional>

namespace tamsy {

class LibraryDocument;
class UserDefaults;

/// A stored folder as a start finds it.
struct FolderRecord {
    QUuid id;
    QByteArray data;                 ///< the bookmark's bytes
    std::optional<TrackList> tracks; ///< absent until the folder's first scan has finished
};

/// Keeps the user's folders and their tracks as one JSON document in the user defaults. Nothing is
/// held in memory: each change reads the whole document, changes it and hands it back to the store,
/// so every operation leaves it complete. Interface thread only.
///
/// A document that can't be decoded reads as empty. Its bytes stay as they are until the next
/// change, which moves them aside.
class FolderPersistence {
  public:
    static constexpr auto defaultsKey = "FolderLibraryService.Bookmarks";

    /// What `saveBookmark` stored.
    struct SavedBookmark {
        QUuid id;
        QByteArray data;
    };

    /// Works on `defaults`, which must outlive it.
    explicit FolderPersistence(UserDefaults& defaults) : defaults_(defaults) {}

    /// Adds an entry without tracks for `folder`. Nothing, and nothing is stored, if it is no
    /// folder that can be opened.
    [[nodiscard]] std::optional<SavedBookmark> saveBookmark(const FileURL& folder);

    /// Replaces the tracks of the entry `folderId`; without such an entry nothing is written.
    void saveTracks(QUuid folderId, const TrackList& tracks);

    /// Removes every entry with this id.
    void removeRecord(QUuid id);

    /// All entries in stored order, but for those whose bookmark text is broken; these stay stored.
    [[nodiscard]] QList<FolderRecord> loadRecords();

    /// The folder's address, if it can be opened now.
    [[nodiscard]] static std::optional<FileURL> resolveBookmark(const FolderRecord& record);

  private:
    [[nodiscard]] LibraryDocument loadRaw();
    void saveRaw(const LibraryDocument& document);

    UserDefaults& defaults_;
};

} // namespace tamsy
