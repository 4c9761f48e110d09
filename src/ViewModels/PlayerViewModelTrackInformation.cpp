// Title and cover of the current file. They arrive after the sound has started. An answer that
// arrives when the user has already moved on to another file is dropped.

#include "Services/Artwork/FallbackCover.h"
#include "Utils/TextTrimming.h"
#include "ViewModels/PlayerViewModel.h"

#include <QFutureWatcher>

namespace tamsy {

void PlayerViewModel::loadTrackInformation(const FileURL& url) {
    using Watcher = QFutureWatcher<AudioMetadata>;
    auto* watcher = new Watcher(this); // no answer arrives once the player is gone
    connect(watcher, &Watcher::finished, this, [this, watcher, url] {
        watcher->deleteLater();
        if (watcher->isCanceled() || !(currentURL_ == url))
            return;
        const QString title = watcher->result().title;
        const QStringView tagged = trimmedOfWhitespaceAndNewlines(title);
        setCurrentTitle(tagged.isEmpty() ? url.nameWithoutExtensionText() : tagged.toString());
        showArtwork(url, nullptr);
    });
    watcher->setFuture(metadataReader_.loadTextsAsync(url));
}

void PlayerViewModel::ensureCurrentArtwork() {
    if (currentArtwork_.isNull() && !currentURL_.isEmpty())
        showArtwork(currentURL_, fallbackArtwork);
}

QImage PlayerViewModel::fallbackArtwork() {
    return fallbackCover();
}

/// If the file has no picture the previous one stays, unless there is a `fallback`.
void PlayerViewModel::showArtwork(const FileURL& url, QImage (*fallback)()) {
    constexpr auto variant = ArtworkLoader::Variant::medium512;
    ArtworkLoader& loader = dependencies_.artworkLoader != nullptr ? *dependencies_.artworkLoader
                                                                   : ArtworkLoader::shared();
    if (const QImage kept = loader.image(url, variant); !kept.isNull()) {
        setCurrentArtwork(kept);
        return;
    }
    loader.load(
        url, variant,
        [player = QPointer(this), url, fallback](const QImage& image) {
            if (player.isNull() || !(player->currentURL_ == url))
                return;
            if (!image.isNull())
                player->setCurrentArtwork(image);
            else if (fallback != nullptr)
                player->setCurrentArtwork(fallback());
        },
        ArtworkLoader::Urgency::PlayingFile);
}

void PlayerViewModel::setCurrentArtwork(const QImage& image) {
    if (currentArtwork_.cacheKey() == image.cacheKey())
        return;
    currentArtwork_ = image;
    Q_EMIT currentArtworkChanged();
}

} // namespace tamsy
