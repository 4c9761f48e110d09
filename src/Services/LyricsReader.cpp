#include "Services/LyricsReader.h"

#include "Platform/InterfaceThread.h"
#include "Platform/Media/MediaAsset.h"
#include "Platform/MemoryCache.h"
#include "Platform/WorkerPool.h"
#include "Services/LyricsContainers.h"
#include "Services/LyricsItems.h"
#include "Services/LyricsSidecar.h"

#include <QPromise>

#include <cassert>
#include <memory>

namespace tamsy {
namespace {

// The lyrics of thousands of tracks, more than one run plays.
constexpr std::size_t cacheLimit = std::size_t{64} * 1024 * 1024;

MemoryCache<FileURL, Lyrics>& cache() {
    // Never deleted: a late load may still ask for it while the process ends.
    static auto& shared = *new MemoryCache<FileURL, Lyrics>(cacheLimit);
    return shared;
}

WorkerPool& workers() {
    static WorkerPool pool;
    return pool;
}

/// Roughly the bytes that an entry of the cache holds.
std::size_t costOf(const FileURL& url, const Lyrics& lyrics) {
    constexpr qsizetype ofEntry = 256;
    constexpr qsizetype ofLine = 64;
    qsizetype cost = ofEntry + url.absoluteString().size();
    for (const LyricsLine& line : lyrics.lines)
        cost += ofLine + line.text.size() * qsizetype{sizeof(QChar)};
    return static_cast<std::size_t>(cost);
}

bool hasExtension(const FileURL& url, QByteArrayView extension) {
    return url.pathExtension().toLower() == extension;
}

} // namespace

Lyrics LyricsReader::load(const FileURL& url) const {
    assert(!InterfaceThread::isCurrent());
    if (InterfaceThread::isCurrent())
        return Lyrics::empty;
    if (auto kept = cache().object(url))
        return *std::move(kept);
    for (const auto source :
         {readM4AItem, readEmbeddedLyricsAV, readFlacComments, readEmbeddedLyrics, readLRCFile}) {
        if (auto found = source(url)) {
            cache().setObject(*found, url, costOf(url, *found));
            return *std::move(found);
        }
    }
    return Lyrics::empty;
}

LyricsReader::Found LyricsReader::readM4AItem(const FileURL& url) {
    return hasExtension(url, "m4a") ? readM4ALyrics(url) : std::nullopt;
}

LyricsReader::Found LyricsReader::readEmbeddedLyricsAV(const FileURL& url) {
    return InterfaceThread::waitFor<Found>([url] { return readEmbeddedLyricsAVAsync(url); })
        .value_or(std::nullopt);
}

QFuture<LyricsReader::Found> LyricsReader::readEmbeddedLyricsAVAsync(const FileURL& url) {
    const auto promise = std::make_shared<QPromise<Found>>();
    promise->start();
    workers().start([promise, url] {
        Found found = lyricsAmongItems(MediaAsset(url, MediaAsset::Depth::Items));
        InterfaceThread::run([promise, found = std::move(found)] {
            promise->addResult(found);
            promise->finish();
        });
    });
    return promise->future();
}

LyricsReader::Found LyricsReader::readFlacComments(const FileURL& url) {
    return hasExtension(url, "flac") ? readFlacVorbisLyrics(url) : std::nullopt;
}

LyricsReader::Found LyricsReader::readEmbeddedLyrics(const FileURL& url) {
    return lyricsInInfoDictionary(MediaAsset(url, MediaAsset::Depth::Items));
}

} // namespace tamsy
