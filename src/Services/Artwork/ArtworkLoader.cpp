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

struct Measure {
    const char* text;
    int side;

    [[nodiscard]] QSize targetSize() const { return {side, side}; }

    /// Of the picture in memory, in bytes.
    [[nodiscard]] std::size_t cost() const {
        constexpr std::size_t bytesPerPixel = 4;
        return static_cast<std::size_t>(side) * static_cast<std::size_t>(side) * bytesPerPixel;
    }
};

Measure measureOf(ArtworkLoader::Variant variant) {
    return variant == ArtworkLoader::Variant::thumb64 ? Measure{"64", 64} : Measure{"512", 512};
}

QByteArray cacheKey(const FileURL& url, ArtworkLoader::Variant variant) {
    return url.absoluteString() + '#' + measureOf(variant).text;
}

/// The whole picture, stretched into the square.
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

/// Static objects end in an order that nobody can see. By then no operation may be left that still
/// decodes pictures or asks for the interface thread.
void endShared() {
    InterfaceThread::releaseWaiters();
    ArtworkLoader::shared().end();
}

} // namespace

ArtworkLoader& ArtworkLoader::shared() {
    static ArtworkLoader loader(standardSources());
    [[maybe_unused]] static const bool endsInTime = (qAddPostRoutine(endShared), true);
    return loader;
}

/// What the loader and its operations hold.
struct ArtworkLoader::Kept {
    explicit Kept(Sources from)
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
    std::mutex accessLock; // guards tasks; never held during a file operation or a callback
    QHash<QByteArray, std::shared_ptr<Operation>> tasks; // what is in flight for each key
};

ArtworkLoader::ArtworkLoader(Sources sources)
    : kept_(std::make_shared<Kept>(std::move(sources))),
      queue_(maximumConcurrentOperations, "covers") {
    queue_.givePlacesUpAfter();
}

ArtworkLoader::~ArtworkLoader() {
    end();
}

void ArtworkLoader::end() {
    queue_.endWithin(OperationQueue::patience);
}

QByteArray ArtworkLoader::load(const FileURL& url, Variant variant, Completion completion,
                               Urgency urgency) {
    QByteArray key = cacheKey(url, variant);
    if (const QImage found = image(url, variant); !found.isNull()) {
        completion(found);
        return key;
    }
    auto operation = std::make_shared<Operation>(
        [weak = std::weak_ptr(kept_), url, variant, completion = std::move(completion)] {
            if (const auto kept = weak.lock())
                kept->readArtwork(url, variant, completion);
        });
    operation->setCompletionHook([weak = std::weak_ptr(kept_), key, self = operation.get()] {
        if (const auto kept = weak.lock())
            kept->forget(key, self);
    });
    std::shared_ptr<Operation> former; // ends outside the lock, with all that its closures hold
    {
        const std::scoped_lock lock(kept_->accessLock);
        former = std::exchange(kept_->tasks[key], operation);
        if (former)
            former->cancel();
    }
    queue_.add(std::move(operation), urgency == Urgency::PlayingFile ? OperationQueue::Place::First
                                                                     : OperationQueue::Place::Last);
    return key;
}

QImage ArtworkLoader::image(const FileURL& url, Variant variant) {
    return kept_->image(url, variant);
}

void ArtworkLoader::cancel(const FileURL& url, Variant variant) {
    std::shared_ptr<Operation> operation;
    {
        const std::scoped_lock lock(kept_->accessLock);
        operation = kept_->tasks.take(cacheKey(url, variant));
    }
    if (operation)
        operation->cancel();
}

QImage ArtworkLoader::Kept::image(const FileURL& url, Variant variant) {
    const QByteArray key = cacheKey(url, variant);
    if (auto found = cache.object(key))
        return *std::move(found);
    const Measure measure = measureOf(variant);
    QImage stored = files.read(url, measure.text);
    if (!stored.isNull())
        cache.setObject(stored, key, measure.cost());
    return stored;
}

void ArtworkLoader::Kept::readArtwork(const FileURL& url, Variant variant,
                                      const Completion& completion) {
    const PatientReads patient;
    const std::optional<AudioMetadata> metadata = sources.readMetadata(url);
    // A reading that was cut short says nothing about the cover, and must not leave the fallback in
    // its place for ever.
    if (!metadata && (InterfaceThread::isReleased() || FileWatch::isCurrentAbandoned()))
        return;
    const bool hasArtwork = metadata && !metadata->artwork.isNull();
    const QImage artwork = hasArtwork ? metadata->artwork : sources.fallbackCover();
    const QImage scaled = resize(artwork, measureOf(variant).targetSize());
    if (metadata && !scaled.isNull())
        store(scaled, url, variant);
    InterfaceThread::run([completion, scaled] { completion(scaled); });
}

void ArtworkLoader::Kept::store(const QImage& scaled, const FileURL& url, Variant variant) {
    const Measure measure = measureOf(variant);
    cache.setObject(scaled, cacheKey(url, variant), measure.cost());
    files.write(scaled, url, measure.text);
}

void ArtworkLoader::Kept::forget(const QByteArray& key, const Operation* operation) {
    std::shared_ptr<Operation> finished;
    const std::scoped_lock lock(accessLock);
    const auto found = tasks.find(key);
    if (found == tasks.end() || found->get() != operation)
        return;
    finished = std::move(*found);
    tasks.erase(found);
}

} // namespace tamsy
