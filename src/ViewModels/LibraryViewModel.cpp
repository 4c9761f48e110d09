#include "ViewModels/LibraryViewModel.h"

#include "Utils/JoinedSubscription.h"
#include "Utils/LowercaseMatcher.h"
#include "Utils/TextTrimming.h"

#include <QPointer>

#include <algorithm>

namespace tamsy {
namespace {

/// A matcher that remembers its last answer for a text: tracks of one album share their artist and
/// album texts, which are then looked at once.
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
    const AudioFolder* folder = selectedFolder();
    if (folder == nullptr)
        return {};
    const QStringView query = trimmedOfWhitespaceAndNewlines(searchText_);
    if (query.isEmpty())
        return folder->tracks;
    LowercaseMatcher title(query);
    SharedTextMatcher artist(query);
    SharedTextMatcher album(query);
    TrackList matching;
    std::copy_if(folder->tracks.cbegin(), folder->tracks.cend(), std::back_inserter(matching),
                 [&](const Track& track) {
                     return title.isContainedIn(track.title) ||
                            artist.isContainedIn(track.artist) || album.isContainedIn(track.album);
                 });
    return matching;
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
    // The service already has a new folder that this object gets with the next event.
    if (selectedFolderId_.isNull() && !service_->folders().isEmpty())
        setSelectedFolderId(service_->folders().constFirst().id);
}

} // namespace tamsy
