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

// The lyrics of thousands of tracks, more than one run plays.
constexpr std::size_t cacheLimit = std::size_t{64} * 1024 * 1024;

MemoryCache<FileURL, Lyrics>& cache() {
    // Never deleted: a late load may still ask for it while the process ends.
    static auto& shared = *new MemoryCache<FileURL, Lyrics>(cacheLimit);
    return shared;
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
    const PatientReads patient;
    for (const auto source :
         {readM4AItem, readEmbeddedLyricsAV, readFlacComments, readEmbeddedLyrics, readLRCFile}) {
        auto found = source(url);
        if (FileWatch::isCurrentAbandoned())
            break; // what was read may be a part only
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

/// The answer goes by way of the interface thread, which takes part in every load.
LyricsReader::Found LyricsReader::readEmbeddedLyricsAV(const FileURL& url) {
    Found found = lyricsAmongItems(MediaAsset(url, MediaAsset::Depth::Items));
    return InterfaceThread::waitFor<Found>(
               [found = std::move(found)] { return QtFuture::makeReadyFuture(found); })
        .value_or(std::nullopt);
}

LyricsReader::Found LyricsReader::readFlacComments(const FileURL& url) {
    return hasExtension(url, "flac") ? readFlacVorbisLyrics(url) : std::nullopt;
}

LyricsReader::Found LyricsReader::readEmbeddedLyrics(const FileURL& url) {
    return lyricsInInfoDictionary(MediaAsset(url, MediaAsset::Depth::Items));
}

} // namespace tamsy
