#include "Tags/MediaAsset.h"

#include "Tags/Aiff.h"
#include "Tags/Ape.h"
#include "Tags/Caf.h"
#include "Tags/Flac.h"
#include "Tags/FrameStream.h"
#include "Tags/Id3v1.h"
#include "Tags/Id3v2.h"
#include "Tags/Mp4.h"
#include "Tags/Ogg.h"
#include "Tags/Riff.h"

#include <algorithm>
#include <iterator>

namespace tamsy {

namespace {

using media::ItemCollector;
using media::MediaParse;

double readFrames(MediaParse& parse, std::uint64_t offset) {
    const bool hasId3v2 = offset > 0;
    if (!hasId3v2)
        media::readApeTag(parse);
    media::readId3v1(parse);
    const auto first =
        parse.wantsDuration ? media::findFirstFrame(parse, offset) : std::optional<std::uint64_t>();
    return first ? media::frameStreamDuration(parse, *first) : 0;
}

/// Reads what follows the leading tags. Returns the duration in seconds.
double readContent(MediaParse& parse, std::uint64_t offset) {
    const std::string head(media::asText(parse.window.readUpTo(offset, 12)));
    const std::string_view signature = std::string_view(head).substr(0, 4);
    const std::string_view kind =
        std::string_view(head).substr(std::min<std::size_t>(8, head.size()));
    if (signature == "fLaC") {
        const std::size_t leading = parse.items.count();
        const double seconds = media::readFlac(parse, offset);
        parse.items.moveToEnd(leading); // a foreign tag, which others read last as well
        return seconds;
    }
    if (signature == "OggS")
        return media::readOgg(parse, offset);
    if ((signature == "RIFF" || signature == "RF64" || signature == "BW64") &&
        (kind == "WAVE" || kind == "RMP3"))
        return media::readRiff(parse, offset);
    if (signature == "FORM" && (kind == "AIFF" || kind == "AIFC"))
        return media::readAiff(parse, offset);
    if (signature == "caff")
        return media::readCaf(parse, offset);
    if (head.compare(std::min<std::size_t>(4, head.size()), 4, "ftyp") == 0)
        return media::readMp4(parse, offset);
    return readFrames(parse, offset);
}

std::vector<MediaItem> selected(const std::vector<MediaItem>& items, auto&& predicate) {
    std::vector<MediaItem> found;
    std::ranges::copy_if(items, std::back_inserter(found), predicate);
    return found;
}

} // namespace

MediaAsset::MediaAsset(const FileURL& url, Depth depth) : source_(media::openFileSource(url)) {
    if (!source_)
        return;
    MediaParse parse(source_,
                     depth == Depth::CommonTexts ? ItemCollector::Wanted::CommonTexts
                                                 : ItemCollector::Wanted::Everything,
                     depth != Depth::Items);
    const std::uint64_t content = media::readId3v2Tags(parse, 0, parse.window.size());
    const double seconds = readContent(parse, content);
    duration_ = parse.wantsDuration ? seconds : 0;
    items_ = parse.items.takeItems();
    info_ = media::namedTexts(items_);
}

std::vector<MediaItem> MediaAsset::commonMetadata() const {
    return selected(items_, [](const MediaItem& item) { return item.commonKey.has_value(); });
}

std::vector<MediaItem> MediaAsset::metadata(MetadataFormat format) const {
    return selected(items_, [format](const MediaItem& item) { return item.format == format; });
}

} // namespace tamsy
