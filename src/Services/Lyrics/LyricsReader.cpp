#include "Services/Lyrics/LyricsReader.h"

#include "Platform/Threads/FileWatch.h"
#include "Platform/Threads/InterfaceThread.h"
#include "Platform/Threads/ReadPriority.h"
#include "Services/Lyrics/LyricsContainers.h"
#include "Services/Lyrics/LyricsItems.h"
#include "Services/Lyrics/LyricsSidecar.h"
#include "Tags/MediaAsset.h"
#include "Utils/FileURL.h"
#include "Utils/MemoryCache.h"

#include <QFuture>

#include <cassert>
#include <utility>

namespace tamsy {
namespace {

// Holds the lyrics of thousands of tracks.
constexpr std::size_t cacheLimit = std::size_t{64} * 1024 * 1024;

MemoryCache<FileURL, Lyrics>& cache() {
    // Never destroyed: a late load may still use it while the process ends.
    static auto& shared = *new MemoryCache<FileURL, Lyrics>(cacheLimit);
    return shared;
}

/// The approximate size of a cache entry, in bytes.
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
    if (auto cached = cache().object(url))
        return *std::move(cached);
    const YieldingReads yielding;
    for (const auto source :
         {readM4AItem, readEmbeddedLyricsAV, readFlacComments, readEmbeddedLyrics, readLRCFile}) {
        auto found = source(url);
        if (FileWatch::isCurrentAbandoned())
            break; // the file may have been read only in part
        if (found) {
            cache().setObject(*found, url, costOf(url, *found));
            return *std::move(found);
        }
    }
    return Lyrics::empty;
}

LyricsReader::Found LyricsReader::readM4AItem(const FileURL& url) {
    return hasExtension(url, "m4a") ? readM4ALyrics(url) : std::nullopt;
}

/// The answer takes a turn on the interface thread, as every load must.
LyricsReader::Found LyricsReader::readEmbeddedLyricsAV(const FileURL& url) {
    Found found = readEmbeddedLyricsAVAsync(MediaAsset(url, MediaAsset::Depth::Items));
    return InterfaceThread::call<Found>([found = std::move(found)] { return found; })
        .value_or(std::nullopt);
}

LyricsReader::Found LyricsReader::readFlacComments(const FileURL& url) {
    return hasExtension(url, "flac") ? readFlacVorbisLyrics(url) : std::nullopt;
}

LyricsReader::Found LyricsReader::readEmbeddedLyrics(const FileURL& url) {
    return lyricsInInfoDictionary(MediaAsset(url, MediaAsset::Depth::Items));
}

} // namespace tamsy
