#pragma once

#include "Models/AudioFolder.h"
#include "Platform/Storage/UserDefaults.h"
#include "Platform/Threads/InterfaceReceiver.h"
#include "Platform/Threads/OperationQueue.h"
#include "Services/Library/FolderPersistence.h"
#include "Utils/ValueSubject.h"

#include <QList>
#include <QObject>

#include <functional>
#include <memory>
#include <stop_token>

namespace tamsy {

struct AudioMetadata;

/// The library: the folders that the user added, with the tracks found in them. It restores them at
/// construction, scans on a queue of its own, one file at a time, and stores each change at once.
/// Lives on the interface thread. Its destructor stops a running scan, whose result is dropped; a
/// scan that is stuck in a file is abandoned after a moment.
class FolderLibraryService : public QObject {
    Q_OBJECT

  public:
    /// Reads one file's tags. Called on the scan queue, one file after another. A call that is
    /// stuck may outlive the service, with its own copy of this.
    using TagReader = std::function<AudioMetadata(const FileURL&)>;

    /// The library stored in `defaults`, which must outlive this object.
    explicit FolderLibraryService(UserDefaults& defaults = UserDefaults::standard(),
                                  TagReader readTags = fileTagReader(), QObject* parent = nullptr);

    ~FolderLibraryService() override;

    /// The folders in the order in which they were added. One that can't be opened now is missing
    /// and returns at a later start. Copies share the tracks' memory.
    [[nodiscard]] const QList<AudioFolder>& folders() const { return folders_; }

    /// Sends the list and every later one, on the interface thread.
    [[nodiscard]] Publisher<QList<AudioFolder>> foldersPublisher() const {
        return foldersSubject_.publisher();
    }

    /// Adds `url` at once, without tracks, and scans it. Returns false and changes nothing if it
    /// isn't a folder that can be opened. A folder added twice is listed twice.
    [[nodiscard]] bool addFolder(const FileURL& url);

    /// Removes the folder from the list and the store. The result of a running scan is dropped.
    void removeFolder(QUuid id);

    /// Queues a scan, whose result replaces the folder's whole track list in one step. An unknown
    /// id does nothing.
    void rescanFolder(QUuid id);

  private:
    static TagReader fileTagReader();
    void loadPersistedFolders();
    void setFolders(QList<AudioFolder> folders);
    void finishScan(QUuid id, const TrackList& tracks);

    QList<AudioFolder> folders_;
    ValueSubject<QList<AudioFolder>> foldersSubject_{{}};
    FolderPersistence persistence_;
    TagReader readTags_;
    std::stop_source scanStop_;
    std::shared_ptr<InterfaceReceiver> receiver_; // a scan stuck on a dead mount may outlive this
    // A single thread, so that scans run one after another.
    OperationQueue scanQueue_{1, "library.scan.queue"};
};

} // namespace tamsy
