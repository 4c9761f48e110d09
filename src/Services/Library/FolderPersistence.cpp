#include "Services/Library/FolderPersistence.h"

#include "Platform/Storage/Bookmark.h"
#include "Platform/Storage/LargeMemory.h"
#include "Platform/Storage/UserDefaults.h"
#include "Services/Library/LibraryDocument.h"

#include <QDateTime>

#include <algorithm>

namespace tamsy {
namespace {

/// From 1970-01-01 to 2001-01-01, the epoch of the stored dates.
constexpr double secondsToReferenceDate = 978'307'200;

double now() {
    constexpr double millisecondsPerSecond = 1000;
    return static_cast<double>(QDateTime::currentMSecsSinceEpoch()) / millisecondsPerSecond -
           secondsToReferenceDate;
}

QByteArrayView viewOf(std::string_view text) {
    return {text.data(), static_cast<qsizetype>(text.size())};
}

std::string_view viewOf(const QByteArray& bytes) {
    return {bytes.constData(), static_cast<std::size_t>(bytes.size())};
}

/// Strict: nothing unless `text` is exactly what encoding gives, padding included.
std::optional<QByteArray> decodeBase64(std::string_view text) {
    const QByteArray encoded = viewOf(text).toByteArray();
    auto decoded = QByteArray::fromBase64Encoding(encoded, QByteArray::AbortOnBase64DecodingErrors);
    if (!decoded || decoded.decoded.toBase64() != encoded)
        return std::nullopt;
    return std::move(decoded.decoded);
}

/// Lets equal texts of adjacent tracks share their memory: whole albums repeat their artist and
/// album.
class SharedText {
  public:
    const QString& operator()(std::string_view utf8) {
        if (utf8 != last_) {
            last_ = utf8;
            text_ = QString::fromUtf8(viewOf(utf8));
        }
        return text_;
    }

  private:
    std::string_view last_;
    QString text_;
};

/// The memory that the restored tracks need, in bytes, with texts of common lengths.
std::size_t expectedMemory(const LibraryDocument& document) {
    constexpr std::size_t perTrack = 400;
    std::size_t tracks = 0;
    for (const PersistedFolder& folder : document.folders())
        tracks += folder.tracks ? folder.tracks->size() : 0;
    return tracks * perTrack;
}

/// The text last copied into a document.
struct KeptText {
    QString text;
    std::string_view utf8;
};

TrackList restoredTracks(const PersistedTracks& persisted) {
    SharedText artist;
    SharedText album;
    SharedText fileExtension;
    TrackList tracks;
    tracks.reserve(static_cast<qsizetype>(persisted.size()));
    const FileURL root = FileURL::fromPath("/"); // replaces an address that can't be parsed
    for (const PersistedTrack& track : persisted) {
        FileURL url = FileURL::fromAbsoluteString(viewOf(track.urlString)).value_or(root);
        if (!tracks.isEmpty())
            url.shareFolder(tracks.constLast().url);
        tracks.append({track.id, std::move(url), QString::fromUtf8(viewOf(track.title)),
                       artist(track.artist), album(track.album), track.duration,
                       fileExtension(track.fileExtension).toLower()});
    }
    return tracks;
}

/// Replaces the folder's tracks. A text that adjacent tracks share is copied once.
void replaceTracks(PersistedFolder& folder, const TrackList& tracks, LibraryDocument& document) {
    if (!folder.tracks)
        folder.tracks = document.makeTracks();
    folder.tracks->clear();
    folder.tracks->reserve(static_cast<std::size_t>(tracks.size()));
    const auto keepShared = [&document](KeptText& kept, const QString& text) {
        if (!kept.text.isSharedWith(text))
            kept = {text, document.keep(text)};
        return kept.utf8;
    };
    KeptText artist;
    KeptText album;
    KeptText fileExtension;
    for (const Track& track : tracks)
        folder.tracks->push_back({track.id, document.keep(track.url.absoluteString()),
                                  document.keep(track.title), keepShared(artist, track.artist),
                                  keepShared(album, track.album), track.duration,
                                  keepShared(fileExtension, track.fileExtension)});
}

} // namespace

std::optional<FolderPersistence::SavedBookmark>
FolderPersistence::saveBookmark(const FileURL& folder) {
    const auto bookmark = Bookmark::create(folder);
    if (!bookmark)
        return std::nullopt;
    const QUuid id = QUuid::createUuid();
    const QByteArray encoded = bookmark->toBase64();
    LibraryDocument document = loadRaw();
    document.folders().push_back({id, viewOf(encoded), now(), std::nullopt});
    if (!saveRaw(document))
        return std::nullopt;
    return SavedBookmark{id, *bookmark};
}

void FolderPersistence::saveTracks(QUuid folderId, const TrackList& tracks) {
    LibraryDocument document = loadRaw();
    const auto folder = std::find_if(document.folders().begin(), document.folders().end(),
                                     [&](const auto& entry) { return entry.id == folderId; });
    if (folder == document.folders().end())
        return;
    if (folder->tracks && folder->tracks->size() > 2 * static_cast<std::size_t>(tracks.size()))
        defaults_.keepPrevious(defaultsKey);
    replaceTracks(*folder, tracks, document);
    saveRaw(document);
}

void FolderPersistence::removeRecord(QUuid id) {
    LibraryDocument document = loadRaw();
    if (std::erase_if(document.folders(), [&](const auto& entry) { return entry.id == id; }) > 0)
        defaults_.keepPrevious(defaultsKey);
    saveRaw(document);
}

QList<FolderRecord> FolderPersistence::loadRecords() {
    const LibraryDocument document = loadRaw();
    const LargePageHeap heap(expectedMemory(document));
    QList<FolderRecord> records;
    for (const PersistedFolder& folder : document.folders()) {
        auto bookmark = decodeBase64(folder.bookmarkBase64);
        if (!bookmark)
            continue;
        records.append({folder.id, *std::move(bookmark), std::nullopt});
        if (folder.tracks)
            records.back().tracks = restoredTracks(*folder.tracks);
    }
    return records;
}

std::vector<std::optional<FileURL>>
FolderPersistence::resolveBookmarks(const QList<FolderRecord>& records) {
    QList<QByteArray> bookmarks;
    for (const FolderRecord& record : records)
        bookmarks.append(record.data);
    return Bookmark::resolve(bookmarks);
}

LibraryDocument FolderPersistence::loadRaw() {
    const auto data = defaults_.dataForKey(defaultsKey);
    if (!data)
        return {};
    if (auto document = LibraryDocument::decode(*data))
        return *std::move(document);
    defaults_.moveAside(defaultsKey);
    return {};
}

bool FolderPersistence::saveRaw(const LibraryDocument& document) {
    auto data = document.encode();
    return data && defaults_.setObject(*std::move(data), defaultsKey);
}

} // namespace tamsy
