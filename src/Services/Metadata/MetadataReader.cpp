#include "Services/Metadata/MetadataReader.h"

#include "Platform/Threads/InterfaceThread.h"
#include "Platform/Threads/WorkerPool.h"
#include "Services/Metadata/FlacArtwork.h"
#include "Tags/ImageDecoding.h"
#include "Tags/MediaAsset.h"
#include "Utils/FileURL.h"
#include "Utils/TextTrimming.h"

#include <QPromise>

#include <algorithm>
#include <cassert>
#include <cmath>
#include <functional>
#include <memory>
#include <vector>

namespace tamsy {

namespace {

using Items = std::vector<MediaItem>;
using OptionalText = std::optional<QString>;

constexpr MetadataFormat formats[] = {MetadataFormat::ID3, MetadataFormat::ITunes,
                                      MetadataFormat::QuickTime};

// The three fields, in the order in which they are always processed.
struct Field {
    CommonKey key;
    const char* infoKey;
    QString AudioMetadata::*text;
};
constexpr Field fields[] = {{CommonKey::Title, "title", &AudioMetadata::title},
                            {CommonKey::Artist, "artist", &AudioMetadata::artist},
                            {CommonKey::AlbumName, "album", &AudioMetadata::album}};

const MediaItem* firstItem(CommonKey key, const Items& items) {
    const auto found = std::ranges::find(items, key, &MediaItem::commonKey);
    return found == items.end() ? nullptr : &*found;
}

double finiteOrZero(double seconds) {
    return std::isfinite(seconds) ? seconds : 0;
}

QString trimmed(const QString& text) {
    return trimmedOfWhitespaceAndNewlines(text).toString();
}

/// The field's text in the info dictionary, trimmed; nothing if that is empty.
OptionalText infoText(const MediaAsset& asset, const Field& field) {
    const QString text = trimmed(asset.infoDictionary().value(QLatin1String(field.infoKey)));
    return text.isEmpty() ? std::nullopt : OptionalText(text);
}

/// The item's text; nothing if it is empty. Blanks count as text.
OptionalText loadString(const MediaItem& item) {
    return item.text && !item.text->isEmpty() ? item.text : std::nullopt;
}

/// The item's bytes; nothing if they exceed the budget.
std::optional<QByteArray> loadData(const MediaItem& item, PictureBudget& budget) {
    QByteArray data = item.data();
    return budget.takeBytes(data.size()) ? std::optional(std::move(data)) : std::nullopt;
}

// The steps of the asynchronous load bear its suffix; `loadWithoutArtwork` has other rules.

/// The first text with this key.
OptionalText firstCommonStringAsync(CommonKey key, const Items& items) {
    for (const MediaItem& item : items) {
        if (item.commonKey != key)
            continue;
        if (auto text = loadString(item))
            return text;
    }
    return std::nullopt;
}

/// Decodes a picture that a tag stores as base64 text.
QImage decodeText(const MediaItem& item, PictureBudget& budget) {
    const OptionalText text = loadString(item);
    if (!text)
        return {};
    const auto bytes =
        QByteArray::fromBase64Encoding(text->toUtf8(), QByteArray::AbortOnBase64DecodingErrors);
    return bytes ? decodeImage(bytes.decoded, budget) : QImage();
}

QImage decodeItem(const MediaItem& item, PictureBudget& budget) {
    if (!budget.hasTime())
        return {};
    const auto data = loadData(item, budget);
    QImage image = data ? decodeImage(*data, budget) : QImage();
    return image.isNull() ? decodeText(item, budget) : image;
}

/// The cover: the first artwork item of the common items, else the first item of any format that is
/// a picture, else a FLAC file's pictures.
QImage artworkImageAsync(const FileURL& url, const MediaAsset& asset, const Items& common) {
    PictureBudget budget;
    if (const MediaItem* item = firstItem(CommonKey::Artwork, common)) {
        QImage image = decodeItem(*item, budget);
        if (!image.isNull())
            return image;
    }
    for (const MetadataFormat format : formats) {
        for (const MediaItem& item : asset.metadata(format)) {
            QImage image = decodeItem(item, budget);
            if (!image.isNull())
                return image;
        }
    }
    const bool isFlac = url.pathExtension().toLower() == "flac";
    return isFlac ? flacEmbeddedArtwork(url, budget) : QImage();
}

/// What the worker prepares in memory for the interface thread.
struct LoadedFile {
    LoadedFile(const FileURL& url, MediaAsset::Depth depth)
        : asset(url, depth), common(asset.commonMetadata()) {}

    void decodeArtwork(const FileURL& url) { artwork = artworkImageAsync(url, asset, common); }

    MediaAsset asset;
    Items common;
    QImage artwork;
};

/// The first text with this key in the items of any format.
OptionalText firstFormatString(CommonKey key, const MediaAsset& asset) {
    for (const MetadataFormat format : formats) {
        if (auto text = firstCommonStringAsync(key, asset.metadata(format)))
            return text;
    }
    return std::nullopt;
}

AudioMetadata chooseMetadata(const LoadedFile& file) {
    AudioMetadata metadata;
    for (const Field& field : fields) {
        OptionalText text = firstCommonStringAsync(field.key, file.common);
        if (!text)
            text = firstFormatString(field.key, file.asset);
        if (!text)
            text = infoText(file.asset, field);
        metadata.*field.text = text.value_or(QString());
    }
    metadata.duration = finiteOrZero(file.asset.duration());
    metadata.artwork = file.artwork;
    return metadata;
}

QFuture<AudioMetadata> startLoad(WorkerPool& workers, std::function<LoadedFile()> read) {
    const auto promise = std::make_shared<QPromise<AudioMetadata>>();
    promise->start();
    workers.start([promise, read = std::move(read)] {
        const auto file = std::make_shared<const LoadedFile>(read());
        InterfaceThread::run([promise, file] {
            promise->addResult(chooseMetadata(*file));
            promise->finish();
        });
    });
    return promise->future();
}

struct BlockingLoad {
    AudioMetadata metadata;
    bool wasRead = false;
};

BlockingLoad loadBlocking(const FileURL& url) {
    assert(!InterfaceThread::isCurrent());
    if (InterfaceThread::isCurrent())
        return {};
    const auto file = std::make_shared<LoadedFile>(url, MediaAsset::Depth::Full);
    file->decodeArtwork(url);
    const auto metadata =
        InterfaceThread::call<AudioMetadata>([file] { return chooseMetadata(*file); });
    return {.metadata = metadata.value_or(AudioMetadata()),
            .wasRead = metadata && file->asset.wasRead()};
}

} // namespace

AudioMetadata MetadataReader::loadWithoutArtwork(const FileURL& url) const {
    const MediaAsset asset(url, MediaAsset::Depth::CommonTexts);
    const Items common = asset.commonMetadata();
    AudioMetadata metadata;
    for (const Field& field : fields) {
        const MediaItem* item = firstItem(field.key, common);
        const QString text = trimmed(item ? item->text.value_or(QString()) : QString());
        metadata.*field.text = text.isEmpty() ? infoText(asset, field).value_or(QString()) : text;
    }
    metadata.duration = finiteOrZero(asset.duration());
    return metadata;
}

QFuture<AudioMetadata> MetadataReader::loadAsync(const FileURL& url) const {
    return startLoad(*workers_, [url] {
        LoadedFile file(url, MediaAsset::Depth::Full);
        file.decodeArtwork(url);
        return file;
    });
}

QFuture<AudioMetadata> MetadataReader::loadTextsAsync(const FileURL& url) const {
    return startLoad(*workers_, [url] { return LoadedFile(url, MediaAsset::Depth::Items); });
}

AudioMetadata MetadataReader::load(const FileURL& url) const {
    return loadBlocking(url).metadata;
}

std::optional<AudioMetadata> MetadataReader::loadIfReadable(const FileURL& url) const {
    const BlockingLoad loaded = loadBlocking(url);
    return loaded.wasRead ? std::optional(loaded.metadata) : std::nullopt;
}

} // namespace tamsy
