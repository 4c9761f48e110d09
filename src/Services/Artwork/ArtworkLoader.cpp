#include "Services/Artwork/ArtworkLoader.h"

#include "Platform/Threads/FileWatch.h"
#include "Platform/Threads/InterfaceThread.h"
#include "Platform/Threads/ReadPriority.h"
#include "Services/Artwork/FallbackCover.h"
#include "Services/Artwork/ThumbnailFiles.h"
#include "Utils/FileURL.h"
#include "Utils/MemoryCache.h"

#include <QCoreApplication>
#include <QHash>

#include <mutex>
#include <utility>

namespace tamsy {
namespace {

constexpr std::size_t totalCostLimit = 64U << 20U; // bytes
constexpr std::size_t maximumConcurrentOperations = 3;

struct VariantSize {
    const char* text;
    int side;

    [[nodiscard]] QSize targetSize() const { return {side, side}; }

    /// The picture's size in memory, in bytes.
    [[nodiscard]] std::size_t cost() const {
        constexpr std::size_t bytesPerPixel = 4;
        return static_cast<std::size_t>(side) * static_cast<std::size_t>(side) * bytesPerPixel;
    }
};

VariantSize sizeOf(ArtworkLoader::Variant variant) {
    return variant == ArtworkLoader::Variant::thumb64 ? VariantSize{"64", 64}
                                                      : VariantSize{"512", 512};
}

QByteArray cacheKey(const FileURL& url, ArtworkLoader::Variant variant) {
    return url.absoluteString() + '#' + sizeOf(variant).text;
}

/// Stretches the whole picture to `size`.
QImage resize(const QImage& image, const QSize& size) {
    return image.isNull() ? image
                          : image.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
}

ArtworkLoader::Sources standardSources() {
    return {.readMetadata = [reader = MetadataReader()](
                                const FileURL& url) { return reader.loadIfReadable(url); },
            .fallbackCover = fallbackCover,
            .applicationSupportDirectory = ThumbnailFiles::applicationSupportDirectory()};
}

/// Static objects are destroyed in no known order. No operation may still be decoding a picture or
/// asking for the interface thread by then.
void endShared() {
    InterfaceThread::releaseWaiters();
    ArtworkLoader::shared().end();
}

} // namespace

ArtworkLoader& ArtworkLoader::shared() {
    static ArtworkLoader loader(standardSources());
    [[maybe_unused]] static const bool isRegistered = (qAddPostRoutine(endShared), true);
    return loader;
}

/// What the loader and its operations share.
struct ArtworkLoader::Caches {
    explicit Caches(Sources from)
        : sources(std::move(from)),
          files(sources.applicationSupportDirectory),
          cache(totalCostLimit) {}

    [[nodiscard]] QImage image(const FileURL& url, Variant variant);
    void readArtwork(const FileURL& url, Variant variant, const Completion& completion);
    void store(const QImage& scaled, const FileURL& url, Variant variant);
    void forget(const QByteArray& key, const Operation* operation);

    const Sources sources;
    const ThumbnailFiles files;
    MemoryCache<QByteArray, QImage> cache;
    std::mutex accessLock; // guards tasks; never held during file access or a callback
    QHash<QByteArray, std::shared_ptr<Operation>> tasks; // the operation in flight for each key
};

ArtworkLoader::ArtworkLoader(Sources sources)
    : caches_(std::make_shared<Caches>(std::move(sources))),
      queue_(maximumConcurrentOperations, "covers") {
    queue_.setSlotTimeout();
}

ArtworkLoader::~ArtworkLoader() {
    end();
}

void ArtworkLoader::end() {
    queue_.endWithin(OperationQueue::endTimeout);
}

QByteArray ArtworkLoader::load(const FileURL& url, Variant variant, Completion completion,
                               Urgency urgency) {
    QByteArray key = cacheKey(url, variant);
    if (const QImage found = image(url, variant); !found.isNull()) {
        completion(found);
        return key;
    }
    auto operation = std::make_shared<Operation>(
        [weak = std::weak_ptr(caches_), url, variant, completion = std::move(completion)] {
            if (const auto caches = weak.lock())
                caches->readArtwork(url, variant, completion);
        });
    operation->setCompletionHook([weak = std::weak_ptr(caches_), key, self = operation.get()] {
        if (const auto caches = weak.lock())
            caches->forget(key, self);
    });
    std::shared_ptr<Operation> previous; // destroyed after the lock is released, with its closures
    {
        const std::scoped_lock lock(caches_->accessLock);
        previous = std::exchange(caches_->tasks[key], operation);
        if (previous)
            previous->cancel();
    }
    queue_.add(std::move(operation), urgency == Urgency::PlayingFile
                                         ? OperationQueue::Position::First
                                         : OperationQueue::Position::Last);
    return key;
}

QImage ArtworkLoader::image(const FileURL& url, Variant variant) {
    return caches_->image(url, variant);
}

void ArtworkLoader::cancel(const FileURL& url, Variant variant) {
    std::shared_ptr<Operation> operation;
    {
        const std::scoped_lock lock(caches_->accessLock);
        operation = caches_->tasks.take(cacheKey(url, variant));
    }
    if (operation)
        operation->cancel();
}

QImage ArtworkLoader::Caches::image(const FileURL& url, Variant variant) {
    const QByteArray key = cacheKey(url, variant);
    if (auto found = cache.object(key))
        return *std::move(found);
    const VariantSize size = sizeOf(variant);
    QImage stored = files.read(url, size.text);
    if (!stored.isNull())
        cache.setObject(stored, key, size.cost());
    return stored;
}

void ArtworkLoader::Caches::readArtwork(const FileURL& url, Variant variant,
                                        const Completion& completion) {
    const YieldingReads yielding;
    const std::optional<AudioMetadata> metadata = sources.readMetadata(url);
    // A read that was cut short says nothing about the cover, so the fallback must not be cached.
    if (!metadata && (InterfaceThread::isReleased() || FileWatch::isCurrentAbandoned()))
        return;
    const bool hasArtwork = metadata && !metadata->artwork.isNull();
    const QImage artwork = hasArtwork ? metadata->artwork : sources.fallbackCover();
    const QImage scaled = resize(artwork, sizeOf(variant).targetSize());
    if (metadata && !scaled.isNull())
        store(scaled, url, variant);
    InterfaceThread::run([completion, scaled] { completion(scaled); });
}

void ArtworkLoader::Caches::store(const QImage& scaled, const FileURL& url, Variant variant) {
    const VariantSize size = sizeOf(variant);
    cache.setObject(scaled, cacheKey(url, variant), size.cost());
    files.write(scaled, url, size.text);
}

void ArtworkLoader::Caches::forget(const QByteArray& key, const Operation* operation) {
    std::shared_ptr<Operation> finished;
    const std::scoped_lock lock(accessLock);
    const auto found = tasks.find(key);
    if (found == tasks.end() || found->get() != operation)
        return;
    finished = std::move(*found);
    tasks.erase(found);
}

} // namespace tamsy
