#include "Playback/FFmpeg/ChainedDecoder.h"

#include "Playback/FFmpeg/OggLinks.h"

#include <algorithm>
#include <cmath>

namespace tamsy {

std::unique_ptr<ChainedDecoder> ChainedDecoder::open(const char* path,
                                                     const std::vector<FileRange>& ranges,
                                                     const std::atomic<bool>& abandoned) {
    std::unique_ptr<ChainedDecoder> chain(new ChainedDecoder(path, abandoned));
    double start = 0;
    for (const FileRange& range : ranges) {
        const auto decoder = FFmpegDecoder::open(path, abandoned, range);
        const double length = decoder ? decoder->duration() : 0;
        if (!(length > 0) || !std::isfinite(length))
            continue;
        chain->links_.push_back({.range = range, .start = start, .length = length});
        start += length;
    }
    return !chain->links_.empty() && chain->enter(0) ? std::move(chain) : nullptr;
}

double ChainedDecoder::duration() const {
    return links_.back().start + links_.back().length;
}

bool ChainedDecoder::enter(std::size_t link) {
    current_ = link;
    decoder_ = FFmpegDecoder::open(path_.c_str(), abandoned_, links_[link].range);
    return decoder_ != nullptr;
}

MediaDecoder::Block ChainedDecoder::decode() {
    if (!decoder_)
        return {{}, true};
    Block block = decoder_->decode();
    const bool isLast = current_ + 1 == links_.size();
    if (!block.ended || isLast)
        return block;
    if (!block.frames.empty()) // they belong to the decoder that the next link replaces
        return {block.frames, false};
    return enter(current_ + 1) ? decoder_->decode() : Block{{}, true};
}

double ChainedDecoder::seek(double seconds) {
    const auto after = std::ranges::upper_bound(links_, std::max(0.0, seconds), {}, &Link::start);
    const auto link = static_cast<std::size_t>(after - links_.begin()) - 1;
    if ((link != current_ || !decoder_) && !enter(link))
        return seconds;
    return links_[link].start + decoder_->seek(seconds - links_[link].start);
}

std::unique_ptr<MediaDecoder> openMedia(const char* path, const std::atomic<bool>& abandoned) {
    const auto input = FileInput::open(path, abandoned);
    const auto links = input ? findOggLinks(*input) : std::vector<FileRange>();
    if (links.size() > 1)
        return ChainedDecoder::open(path, links, abandoned);
    return FFmpegDecoder::open(path, abandoned);
}

} // namespace tamsy
