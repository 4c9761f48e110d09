#pragma once

#include "Models/AudioFolder.h"
#include "Platform/Threads/OperationQueue.h"
#include "Services/Library/FolderPersistence.h"
#include "Utils/ValueSubject.h"

#include <QList>
#include <QObject>

#include <functional>
#include <memory>
#include <stop_token>

namespace tamsy {

class UserDefaults;
struct AudioMetadata;

/// The library: the folders that the user added, with the tracks found in them. It restores them at
/// construction, scans on a queue of its own, one file at a time, and stores each change when it
/// happens. Lives on the interface thread. Its end stops a scan that is under way, without a
/// result; one that is stuck in a file is left behind after a moment.
class FolderLibraryService : public QObject {
    Q_OBJECT

  public:
    /// Reads one file's tags. Called on the scan queue, for one file after another. A reading that
    /// is stuck may outlive the service, with a copy of this.
    using TagReader = std::function<AudioMetadata(const FileURL&)>;

    /// The user's own library: the standard store and the tags of real files.
    explicit FolderLibraryService(QObject* parent = nullptr);

    /// A library kept in `defaults`, which must outlive it.
    FolderLibraryService(UserDefaults& defaults, TagReader readTags, QObject* parent = nullptr);

    ~FolderLibraryService() override;

    /// The library in the order of adding. A folder whose place can't be opened now is absent, and
    /// comes back at a later start. Copies share the tracks' memory.
    [[nodiscard]] const QList<AudioFolder>& folders() const { return folders_; }

    /// The list and every later one, sent on the interface thread.
    [[nodiscard]] Publisher<QList<AudioFolder>> foldersPublisher() const {
        return foldersSubject_.publisher();
    }

    /// Shows `url` at once, empty, and scans it. False, and nothing is changed, if it is no folder
    /// that can be opened. A folder added twice stands twice in the list.
    [[nodiscard]] bool addFolder(const FileURL& url);

    /// Takes the folder out of the list and the store; a result of its scan will find no place.
    void removeFolder(QUuid id);

    /// Queues a scan, whose result replaces the folder's whole track list in one step. Returns at
    /// once; an unknown id does nothing.
    void rescanFolder(QUuid id);

  private:
    class ScanResults;
    void loadPersistedFolders();
    void setFolders(QList<AudioFolder> folders);
    void finishScan(QUuid id, const TrackList& tracks);

    QList<AudioFolder> folders_;
    ValueSubject<QList<AudioFolder>> foldersSubject_{{}};
    FolderPersistence persistence_;
    TagReader readTags_;
    std::stop_source scanStop_;
    std::shared_ptr<ScanResults> scanResults_;
    // One thread, so scans run one after another.
    OperationQueue scanQueue_{1, "library.scan.queue"};
};

} // namespace tamsy
