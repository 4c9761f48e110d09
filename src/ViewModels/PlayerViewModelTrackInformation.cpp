// The title of the current file. It comes after the sound has started, and an answer that arrives
// after the user has gone on to another file is dropped.

#include "Utils/TextTrimming.h"
#include "ViewModels/PlayerViewModel.h"

#include <QFuture>

namespace tamsy {

void PlayerViewModel::loadTrackInformation(const FileURL& url) {
    metadataReader_.loadAsync(url).then(this, [this, url](const AudioMetadata& metadata) {
        const QStringView tagged = trimmedOfWhitespaceAndNewlines(metadata.title);
        const QString title = tagged.isEmpty() ? url.nameWithoutExtensionText() : tagged.toString();
        if (currentURL_ == url)
            setCurrentTitle(title);
    });
}

} // namespace tamsy
