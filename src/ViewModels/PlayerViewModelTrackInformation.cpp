// The title of the current file. It comes after the sound has started, and an answer that arrives
// after the user has gone on to another file is dropped.

#include "Utils/TextTrimming.h"
#include "ViewModels/PlayerViewModel.h"

#include <QFutureWatcher>

namespace tamsy {

void PlayerViewModel::loadTrackInformation(const FileURL& url) {
    using Watcher = QFutureWatcher<AudioMetadata>;
    auto* watcher = new Watcher(this); // ends with the player, and the answer with it
    connect(watcher, &Watcher::finished, this, [this, watcher, url] {
        watcher->deleteLater();
        if (watcher->isCanceled() || !(currentURL_ == url))
            return;
        const QString title = watcher->result().title;
        const QStringView tagged = trimmedOfWhitespaceAndNewlines(title);
        setCurrentTitle(tagged.isEmpty() ? url.nameWithoutExtensionText() : tagged.toString());
    });
    watcher->setFuture(metadataReader_.loadAsync(url));
}

} // namespace tamsy
