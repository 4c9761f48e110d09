#include "Services/ArtworkLoader.h"

#include "Platform/InterfaceThread.h"
#include "Services/FallbackCover.h"

#include <QCoreApplication>

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

/// The whole picture, stretched into the square.
QImage resize(const QImage& image, const QSize& size) {
    return image.isNull() ? image
                          : image.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
}

ArtworkLoader::Sources standardSources() {
    return {.readMetadata = [reader =
                                 MetadataReader()](const FileURL& url) { return reader.load(url); },
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

ArtworkLoader::ArtworkLoader(Sources sources)
    : sources_(std::move(sources)),
      files_(sources_.applicationSupportDirectory),
      cache_(totalCostLimit),
      queue_(maximumConcurrentOperations) {}

QByteArray ArtworkLoader::load(const FileURL& url, Variant variant, Completion completion) {
    QByteArray key = cacheKey(url, variant);
    if (const QImage kept = image(url, variant); !kept.isNull()) {
        completion(kept);
        return key;
    }
    const auto operation = makeOperation(url, variant, std::move(completion));
    std::shared_ptr<Operation> former; // ends outside the lock, with all that its closures hold
    {
        const std::scoped_lock lock(accessLock_);
        former = std::exchange(tasks_[key], operation);
        if (former)
            former->cancel();
    }
    queue_.add(operation);
    return key;
}

QImage ArtworkLoader::image(const FileURL& url, Variant variant) {
    const QByteArray key = cacheKey(url, variant);
    if (auto kept = cache_.object(key))
        return *std::move(kept);
    const Measure measure = measureOf(variant);
    QImage stored = files_.read(url, measure.text);
    if (!stored.isNull())
        cache_.setObject(stored, key, measure.cost());
    return stored;
}

void ArtworkLoader::cancel(const FileURL& url, Variant variant) {
    std::shared_ptr<Operation> operation;
    {
        const std::scoped_lock lock(accessLock_);
        operation = tasks_.take(cacheKey(url, variant));
    }
    if (operation)
        operation->cancel();
}

QByteArray ArtworkLoader::cacheKey(const FileURL& url, Variant variant) {
    return url.absoluteString() + '#' + measureOf(variant).text;
}

std::shared_ptr<Operation> ArtworkLoader::makeOperation(const FileURL& url, Variant variant,
                                                        Completion completion) {
    auto operation =
        std::make_shared<Operation>([this, url, variant, completion = std::move(completion)] {
            readArtwork(url, variant, completion);
        });
    operation->setCompletionHook(
        [this, key = cacheKey(url, variant), self = operation.get()] { forget(key, self); });
    return operation;
}

void ArtworkLoader::readArtwork(const FileURL& url, Variant variant, const Completion& completion) {
    QImage artwork = sources_.readMetadata(url).artwork;
    // A reading that the program's end has cut short says nothing about the cover, and must not
    // leave the fallback in its place for ever.
    if (artwork.isNull() && InterfaceThread::isReleased())
        return;
    if (artwork.isNull())
        artwork = sources_.fallbackCover();
    const Measure measure = measureOf(variant);
    const QImage scaled = resize(artwork, measure.targetSize());
    if (!scaled.isNull()) {
        cache_.setObject(scaled, cacheKey(url, variant), measure.cost());
        files_.write(scaled, url, measure.text);
    }
    InterfaceThread::run([completion, scaled] { completion(scaled); });
}

void ArtworkLoader::forget(const QByteArray& key, const Operation* operation) {
    std::shared_ptr<Operation> finished;
    const std::scoped_lock lock(accessLock_);
    const auto found = tasks_.find(key);
    if (found == tasks_.end() || found->get() != operation)
        return;
    finished = std::move(*found);
    tasks_.erase(found);
}

} // namespace tamsy
