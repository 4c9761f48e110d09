#include "Services/Library/FolderLibraryService.h"

#include "Platform/Storage/DirectoryWalk.h"
#include "Services/Metadata/MetadataReader.h"

#include <algorithm>
#include <cstdio>
#include <memory>
#include <numeric>
#include <utility>

namespace tamsy {
namespace {

void print(const QByteArray& line) {
    std::puts(line.constData());
    std::fflush(stdout);
}

auto hasId(QUuid id) {
    return [id](const AudioFolder& folder) { return folder.id == id; };
}

/// The file name's extension in lower case; empty if it has none.
QByteArray lowercaseExtension(QByteArrayView name) {
    return name.sliced(name.lastIndexOf('.') + 1).toByteArray().toLower();
}

bool isAudioFile(QByteArrayView name) {
    return name.lastIndexOf('.') > 0 && AudioFolder::isSupportedExtension(lowercaseExtension(name));
}

/// Lets equal texts of adjacent tracks share their memory.
void share(QString& text, const QString& previous) {
    if (text == previous)
        text = previous;
}

Track makeTrack(const FileURL& url, const FolderLibraryService::TagReader& readTags) {
    AudioMetadata metadata = readTags(url);
    QString title = std::move(metadata.title);
    if (title.isEmpty())
        title = url.nameWithoutExtensionText();
    return {QUuid::createUuid(),
            url,
            std::move(title),
            std::move(metadata.artist),
            std::move(metadata.album),
            metadata.duration,
            QString::fromLatin1(url.pathExtension().toLower())};
}

TrackList scanFolder(const FileURL& url, const FolderLibraryService::TagReader& readTags,
                     const std::stop_token& stop) {
    TrackList tracks;
    DirectoryWalk::visitFiles(url, stop, isAudioFile, [&](const FileURL& file) {
        Track track = makeTrack(file, readTags);
        if (!tracks.isEmpty()) {
            const Track& previous = tracks.constLast();
            track.url.shareFolder(previous.url);
            share(track.artist, previous.artist);
            share(track.album, previous.album);
            share(track.fileExtension, previous.fileExtension);
        }
        tracks.append(std::move(track));
    });
    tracks.squeeze();
    return tracks;
}

} // namespace

FolderLibraryService::TagReader FolderLibraryService::fileTagReader() {
    return
        [reader = MetadataReader()](const FileURL& url) { return reader.loadWithoutArtwork(url); };
}

FolderLibraryService::FolderLibraryService(UserDefaults& defaults, TagReader readTags,
                                           QObject* parent)
    : QObject(parent),
      persistence_(defaults),
      readTags_(std::move(readTags)),
      receiver_(std::make_shared<InterfaceReceiver>(this)) {
    loadPersistedFolders();
    const qsizetype tracks = std::accumulate(
        folders_.cbegin(), folders_.cend(), qsizetype{0},
        [](qsizetype sum, const auto& folder) { return sum + folder.tracks.size(); });
    print("[Library] init -> folders=" + QByteArray::number(folders_.size()) +
          ", tracks(sum)=" + QByteArray::number(tracks));
}

FolderLibraryService::~FolderLibraryService() {
    scanStop_.request_stop();
    receiver_->close();
    scanQueue_.endWithin(OperationQueue::endTimeout);
}

void FolderLibraryService::loadPersistedFolders() {
    QList<AudioFolder> restored;
    QList<FolderRecord> records = persistence_.loadRecords();
    const auto addresses = FolderPersistence::resolveBookmarks(records);
    for (qsizetype i = 0; i < records.size(); ++i) {
        FolderRecord& record = records[i];
        const auto& url = addresses[static_cast<std::size_t>(i)];
        if (!url)
            continue;
        restored.append(AudioFolder(record.id, *url, std::nullopt,
                                    std::move(record.tracks).value_or(TrackList()),
                                    QDateTime::currentDateTimeUtc()));
    }
    setFolders(std::move(restored));
    print("[Library] restored folders=" + QByteArray::number(folders_.size()));
    for (const AudioFolder& folder : std::as_const(folders_))
        print("[Library] folder=" + folder.displayName.toUtf8() +
              " tracks=" + QByteArray::number(folder.tracks.size()));
}

void FolderLibraryService::setFolders(QList<AudioFolder> folders) {
    folders_ = std::move(folders);
    foldersSubject_.send(folders_);
}

bool FolderLibraryService::addFolder(const FileURL& url) {
    const auto saved = persistence_.saveBookmark(url);
    if (!saved)
        return false;
    setFolders(folders_ + QList{AudioFolder(saved->id, url, std::nullopt, {},
                                            QDateTime::currentDateTimeUtc())});
    rescanFolder(saved->id);
    return true;
}

void FolderLibraryService::removeFolder(QUuid id) {
    QList<AudioFolder> remaining = folders_;
    remaining.removeIf(hasId(id));
    setFolders(std::move(remaining));
    persistence_.removeRecord(id);
}

void FolderLibraryService::rescanFolder(QUuid id) {
    const auto folder = std::find_if(folders_.cbegin(), folders_.cend(), hasId(id));
    if (folder == folders_.cend())
        return;
    const auto scan = [this, receiver = receiver_, readTags = readTags_, id, url = folder->url,
                       stop = scanStop_.get_token()] {
        TrackList tracks = scanFolder(url, readTags, stop);
        if (!stop.stop_requested())
            receiver->run([this, id, found = std::move(tracks)] { finishScan(id, found); });
    };
    scanQueue_.add(std::make_shared<Operation>(scan));
}

/// The list may have changed since the scan was queued, so the folder is looked up again.
void FolderLibraryService::finishScan(QUuid id, const TrackList& tracks) {
    QList<AudioFolder> folders = folders_;
    const auto folder = std::find_if(folders.begin(), folders.end(), hasId(id));
    if (folder == folders.end())
        return;
    folder->tracks = tracks;
    setFolders(std::move(folders));
    persistence_.saveTracks(id, tracks);
}

} // namespace tamsy
