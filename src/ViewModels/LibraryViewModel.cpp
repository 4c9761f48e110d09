#include "ViewModels/LibraryViewModel.h"

#include "Utils/CombineLatest.h"
#include "Utils/LowercaseMatcher.h"
#include "Utils/TextTrimming.h"

#include <QPointer>

#include <algorithm>

namespace tamsy {
namespace {

/// Remembers its last answer: the tracks of an album share their artist and album texts, which are
/// then searched once.
class SharedTextMatcher {
  public:
    explicit SharedTextMatcher(QStringView query) : matcher_(query) {}

    bool isContainedIn(const QString& text) {
        if (text.constData() != lastText_.constData()) {
            lastText_ = text;
            lastAnswer_ = matcher_.isContainedIn(text);
        }
        return lastAnswer_;
    }

  private:
    LowercaseMatcher matcher_;
    QString lastText_; // kept, so that its address can't be given to another text
    bool lastAnswer_ = false;
};

/// Whether a track's title, artist or album contains the trimmed text. A blank text matches all.
class TrackMatcher {
  public:
    explicit TrackMatcher(const QString& text)
        : query_(trimmedOfWhitespaceAndNewlines(text)),
          title_(query_),
          artist_(query_),
          album_(query_) {}

    bool matches(const Track& track) {
        return query_.isEmpty() || title_.isContainedIn(track.title) ||
               artist_.isContainedIn(track.artist) || album_.isContainedIn(track.album);
    }

  private:
    QStringView query_;
    LowercaseMatcher title_;
    SharedTextMatcher artist_;
    SharedTextMatcher album_;
};

} // namespace

LibraryViewModel::LibraryViewModel(std::unique_ptr<FolderLibraryService> service,
                                   std::unique_ptr<FolderPanel> panel, QObject* parent)
    : QObject(parent), service_(std::move(service)), panel_(std::move(panel)) {
    cancellables_.push_back(
        receiveOn(this, service_->foldersPublisher(),
                  [this](const QList<AudioFolder>& folders) { setFolders(folders); }));
    folders_ = service_->folders();
    selectFirstFolderIfNoneIsSelected();
}

LibraryViewModel::~LibraryViewModel() = default;

void LibraryViewModel::setSelectedFolderId(const QUuid& id) {
    if (selectedFolderId_ == id)
        return;
    selectedFolderId_ = id;
    Q_EMIT selectedFolderIdChanged();
    Q_EMIT filteredTracksChanged();
}

void LibraryViewModel::setSearchText(const QString& text) {
    if (searchText_ == text)
        return;
    searchText_ = text;
    Q_EMIT searchTextChanged();
    Q_EMIT filteredTracksChanged();
}

const AudioFolder* LibraryViewModel::selectedFolder() const {
    if (selectedFolderId_.isNull())
        return nullptr;
    const auto found =
        std::find_if(folders_.cbegin(), folders_.cend(),
                     [this](const AudioFolder& f) { return f.id == selectedFolderId_; });
    return found == folders_.cend() ? nullptr : &*found;
}

TrackList LibraryViewModel::filteredTracks() const {
    if (trimmedOfWhitespaceAndNewlines(searchText_).isEmpty())
        return hasSelectedFolder() ? selectedFolder()->tracks : TrackList();
    const TrackRows rows = filteredRows();
    TrackList tracks;
    tracks.reserve(rows.size());
    for (int row = 0; row < rows.size(); ++row)
        tracks.append(rows.at(row));
    return tracks;
}

TrackRows LibraryViewModel::filteredRows() const {
    const AudioFolder* folder = selectedFolder();
    if (folder == nullptr)
        return {};
    TrackMatcher matcher(searchText_);
    TrackRows rows(folder->tracks);
    for (qsizetype index = 0; index < folder->tracks.size(); ++index) {
        if (matcher.matches(folder->tracks.at(index)))
            rows.append(index);
    }
    return rows;
}

bool LibraryViewModel::hasFilteredTracks() const {
    const AudioFolder* folder = selectedFolder();
    return folder != nullptr &&
           std::ranges::any_of(folder->tracks,
                               [matcher = TrackMatcher(searchText_)](const Track& track) mutable {
                                   return matcher.matches(track);
                               });
}

const Track* LibraryViewModel::findTrack(const FileURL& url) const {
    for (const AudioFolder& folder : folders_) {
        const auto found = std::ranges::find(folder.tracks, url, &Track::url);
        if (found != folder.tracks.end())
            return &*found;
    }
    return nullptr;
}

TrackList LibraryViewModel::allTracks() const {
    TrackList all;
    for (const AudioFolder& folder : folders_)
        all += folder.tracks;
    return all;
}

void LibraryViewModel::addFolderViaPanel() {
    panel_->runModal(QStringLiteral("添加"), QStringLiteral("选择一个音乐文件夹"),
                     [self = QPointer(this)](const std::optional<FileURL>& url) {
                         if (self && url)
                             self->addFolder(*url);
                     });
}

void LibraryViewModel::addFolder(const FileURL& url) {
    if (service_->addFolder(url))
        selectFirstFolderIfNoneIsSelected();
}

void LibraryViewModel::removeFolder(const QUuid& id) {
    service_->removeFolder(id);
    if (selectedFolderId_ == id)
        setSelectedFolderId({});
}

void LibraryViewModel::rescanFolder(const QUuid& id) {
    service_->rescanFolder(id);
}

void LibraryViewModel::setFolders(const QList<AudioFolder>& folders) {
    if (folders_ == folders)
        return;
    folders_ = folders;
    Q_EMIT foldersChanged();
    Q_EMIT filteredTracksChanged();
}

void LibraryViewModel::selectFirstFolderIfNoneIsSelected() {
    // The service already has a new folder, which reaches this object with the next event.
    if (selectedFolderId_.isNull() && !service_->folders().isEmpty())
        setSelectedFolderId(service_->folders().constFirst().id);
}

} // namespace tamsy
