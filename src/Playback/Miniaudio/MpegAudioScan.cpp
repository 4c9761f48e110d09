#include "Playback/Miniaudio/MpegAudioScan.h"

#include "Formats/ApeTag.h"
#include "Formats/ByteCursor.h"
#include "Formats/MpegFrameHeader.h"
#include "Playback/Miniaudio/LeadingTags.h"
#include "Playback/Miniaudio/TrailingTags.h"

#include <algorithm>
#include <cstring>
#include <span>

namespace tamsy {
namespace {

// Max junk before the first frame, in bytes: a cut stream starts within a frame, and a tag with a
// wrong size leaves its picture there.
constexpr std::uint64_t searchedBeforeAudio = 8'388'608;
// Max junk between and after frames, in bytes: an incomplete download still plays, but not a
// container with some audio in it.
constexpr std::uint64_t junkAllowance = 1'048'576;
constexpr std::uint64_t junkLimit = 8 * junkAllowance;
// Less than a second between two seek points, which decodes in a millisecond.
constexpr std::uint64_t framesPerPoint = 32;

/// A view of the file that reads ahead in large steps. Positions are offsets in the file.
class Window {
  public:
    /// Reads `step` bytes at a time, and nothing from `end` on.
    Window(const AudioFile& file, std::uint64_t end, std::size_t step = 65'536)
        : file_(file), end_(end), buffer_(step) {}

    /// Up to `count` bytes at `position`; fewer only at the end.
    std::span<const std::byte> at(std::uint64_t position, std::size_t count) {
        if (position >= end_)
            return {};
        count = static_cast<std::size_t>(std::min<std::uint64_t>(count, end_ - position));
        if (position < start_ || position + count > start_ + filled_.size()) {
            ++reads_;
            start_ = position;
            filled_ = file_.read(position, buffer_);
        }
        const auto from = filled_.subspan(static_cast<std::size_t>(position - start_));
        return from.first(std::min(count, from.size()));
    }

    std::optional<MpegFrameHeader> headerAt(std::uint64_t position) {
        return parseMpegFrameHeader(at(position, MpegFrameHeader::size));
    }

    /// The next offset from `position` on at which a header may start, or how far was searched.
    std::uint64_t nextSync(std::uint64_t position) {
        const auto bytes = at(position, 4096);
        if (bytes.empty())
            return position + 1;
        const auto* found =
            static_cast<const std::byte*>(std::memchr(bytes.data(), 0xFF, bytes.size()));
        return position + static_cast<std::uint64_t>(
                              found != nullptr ? found - bytes.data()
                                               : static_cast<std::ptrdiff_t>(bytes.size()));
    }

    /// How often the file has been read.
    [[nodiscard]] std::uint64_t reads() const { return reads_; }

    [[nodiscard]] const AudioFile& file() const { return file_; }
    [[nodiscard]] std::uint64_t end() const { return end_; }

  private:
    const AudioFile& file_;
    std::uint64_t end_;
    std::vector<std::byte> buffer_;
    std::uint64_t start_ = 0;
    std::uint64_t reads_ = 0;
    std::span<const std::byte> filled_;
};

/// Layer III's bit reservoir, as the decoder keeps it: until it is filled, frames that need it
/// can't be decoded.
class Reservoir {
  public:
    /// Adds a frame and returns whether it can be decoded. `borrowed` bytes come from previous
    /// frames, `own` are its main data.
    bool decodes(std::uint32_t borrowed, std::uint32_t own) {
        constexpr std::uint32_t capacity = 511;
        if (!filled_) {
            filled_ = kept_ >= borrowed;
            kept_ = std::min(std::min(kept_, borrowed) + own, capacity);
        }
        return filled_;
    }

  private:
    std::uint32_t kept_ = 0;
    bool filled_ = false;
};

/// A free format frame ends where the next header of its kind starts.
std::uint32_t freeFormatBytes(Window& window, std::uint64_t position, std::uint32_t kind) {
    constexpr std::uint64_t longestFrame = 4608;
    for (std::uint64_t next = window.nextSync(position + MpegFrameHeader::size);
         next < position + longestFrame; next = window.nextSync(next + 1)) {
        const auto header = window.headerAt(next);
        if (header && header->kind == kind && header->frameBytes == 0)
            return static_cast<std::uint32_t>(next - position);
    }
    return 0;
}

std::uint64_t junkLimitFor(std::uint64_t audioBytes) {
    return std::min(junkAllowance + audioBytes, junkLimit);
}

/// The end of a tag at `position`, as between joined songs; `position` if there is none.
std::uint64_t endOfTag(Window& window, std::uint64_t position) {
    const auto bytes = window.at(position, ApeFooter::size);
    if (ByteCursor(bytes).readU24() == 0x494433U /* "ID3" */)
        return endOfLeadingTags(window.file(), position);
    // Header and footer have the same format, and the size includes only one of them.
    const auto header = parseApeFooter(bytes);
    return header ? position + header->itemBytes + 2 * ApeFooter::size : position;
}

/// The header at `position`, with its size, if `followers` more of its kind follow it, or as many
/// as fit into the file.
std::optional<MpegFrameHeader> frameAt(Window& window, std::uint64_t position, int followers) {
    std::optional<MpegFrameHeader> first;
    for (int found = 1;; ++found) {
        auto header = window.headerAt(position);
        if (!header || (first && header->kind != first->kind))
            return endOfTag(window, position) > position ? first : std::nullopt;
        if (header->frameBytes == 0)
            header->frameBytes = freeFormatBytes(window, position, header->kind);
        if (header->frameBytes == 0)
            return std::nullopt;
        if (!first)
            first = header;
        position += header->frameBytes;
        // A single header near the end proves nothing unless its frame ends exactly there.
        const bool atEnd = position == window.end() ||
                           (found > 1 && position + MpegFrameHeader::size > window.end());
        if (found > followers || atEnd)
            return first;
    }
}

} // namespace

class MpegAudioScanner::Walk {
  public:
    explicit Walk(const AudioFile& file)
        : file_(file), window_(file, startOfTrailingTags(file)), position_(endOfLeadingTags(file)) {
        scan_.end = window_.end();
    }

    State advance() {
        if (state_ != State::Walking)
            return state_;
        for (const std::uint64_t reads = window_.reads(); window_.reads() <= reads;) {
            if (position_ + MpegFrameHeader::size > window_.end())
                return state_ = audioBytes_ > 0 ? State::Done : State::Refused;
            if (!step())
                return state_ = State::Refused;
        }
        return state_;
    }

    [[nodiscard]] State state() const { return state_; }
    [[nodiscard]] const MpegAudioScan& scan() const { return scan_; }

    [[nodiscard]] bool hasMusicAhead() const {
        constexpr std::uint64_t samples = 5;
        if (audioBytes_ == 0)
            return false;
        const std::uint64_t share = (window_.end() - position_) / samples;
        std::uint64_t junk = 0;
        file_.expectRandomReads(true);
        for (std::uint64_t i = 0; i < samples; ++i)
            junk += hasMusicAt(position_ + i * share + share / 2) ? 0 : share;
        file_.expectRandomReads(false);
        return junk <= junkLimitFor(audioBytes_ + samples * share - junk);
    }

    [[nodiscard]] std::uint64_t expectedPcmFrames() const {
        if (state_ != State::Walking || audioBytes_ == 0)
            return scan_.pcmFrames;
        const auto walked = static_cast<double>(position_ - scan_.start);
        const auto all = static_cast<double>(window_.end() - scan_.start);
        return static_cast<std::uint64_t>(static_cast<double>(scan_.pcmFrames) * all / walked);
    }

  private:
    struct PendingPoint {
        std::uint64_t byte = 0;
        Reservoir reservoir;
    };

    /// Adds the frame at the position, or skips junk; false if there is too much junk.
    bool step() {
        // The first frame needs more proof: any data contains something like one header.
        if (const auto frame = frameAt(window_, position_, audioBytes_ == 0 ? 3 : 1)) {
            take(*frame, position_);
            position_ += frame->frameBytes;
            return true;
        }
        if (const std::uint64_t tagEnd = endOfTag(window_, position_); tagEnd > position_) {
            forgetLastFrame();
            loseTrack();
            position_ = tagEnd;
            return true;
        }
        const std::uint64_t next = window_.nextSync(position_ + 1);
        const std::uint64_t passed = next - std::exchange(position_, next);
        return skipJunk(passed);
    }

    /// Whether frames like the previous ones follow within a few frame lengths.
    [[nodiscard]] bool hasMusicAt(std::uint64_t position) const {
        constexpr std::size_t sampleBytes = 16'384;
        Window sample(file_, window_.end(), sampleBytes);
        const std::uint64_t end = position + sampleBytes / 2;
        while ((position = sample.nextSync(position)) < end) {
            const auto frame = frameAt(sample, position, 2);
            if (frame && frame->kind == kind_)
                return true;
            ++position;
        }
        return false;
    }

    void take(const MpegFrameHeader& frame, std::uint64_t position) {
        if (audioBytes_ == 0) {
            scan_.start = position;
            scan_.firstFrameEnd = position + frame.frameBytes;
            scan_.firstFramePcmFrames = frame.pcmFrames;
        }
        audioBytes_ += frame.frameBytes;
        if (std::exchange(kind_, frame.kind) != frame.kind)
            loseTrack();
        const std::uint32_t borrowed = borrowedBytes(frame, position);
        const std::uint32_t overhead = frame.sideInfoStart + frame.sideInfoBytes;
        const std::uint32_t own = frame.frameBytes > overhead ? frame.frameBytes - overhead : 0;
        const bool decodes = reservoir_.decodes(borrowed, own);
        if (++frames_ % framesPerPoint == 0)
            pending_ = PendingPoint{position, {}};
        if (pending_ && pending_->reservoir.decodes(borrowed, own) && decodes) {
            scan_.points.push_back({pending_->byte, scan_.pcmFrames});
            pending_.reset();
        }
        lastFrame_ = {position, decodes ? frame.pcmFrames : 0};
        scan_.pcmFrames += lastFrame_.pcmFrame;
    }

    /// Uncounts the last frame: the decoder treats a frame that none follows as junk.
    void forgetLastFrame() {
        scan_.pcmFrames -= lastFrame_.pcmFrame;
        if (!scan_.points.empty() && scan_.points.back().byte == lastFrame_.byte)
            scan_.points.pop_back();
        lastFrame_ = {};
    }

    /// The number of bytes that the frame uses from the bit reservoir, by its side information.
    std::uint32_t borrowedBytes(const MpegFrameHeader& frame, std::uint64_t position) {
        if (frame.sideInfoBytes == 0)
            return 0;
        const auto bits = ByteCursor(window_.at(position + frame.sideInfoStart, 2)).readU16();
        return std::uint32_t{bits.value_or(0)} >> (frame.isVersion1 ? 7U : 8U);
    }

    /// Counts bytes outside frames; false if there are too many.
    bool skipJunk(std::uint64_t bytes) {
        junkBytes_ += bytes;
        loseTrack();
        return junkBytes_ <= (audioBytes_ == 0 ? searchedBeforeAudio : junkLimitFor(audioBytes_));
    }

    /// The decoder resets after junk and where the kind of frames changes.
    void loseTrack() {
        reservoir_ = {};
        pending_.reset();
    }

    const AudioFile& file_;
    Window window_;
    State state_ = State::Walking;
    std::uint64_t position_ = 0; // offset up to which the file has been scanned
    MpegAudioScan scan_;
    std::uint64_t audioBytes_ = 0;
    std::uint64_t junkBytes_ = 0;
    std::uint64_t frames_ = 0;
    std::uint32_t kind_ = 0;
    MpegSeekPoint lastFrame_; // its offset, and the number of its output frames
    Reservoir reservoir_;
    std::optional<PendingPoint> pending_;
};

MpegAudioScanner::MpegAudioScanner(const AudioFile& file) : walk_(std::make_unique<Walk>(file)) {}

MpegAudioScanner::~MpegAudioScanner() = default;

MpegAudioScanner::State MpegAudioScanner::advance() {
    return walk_->advance();
}

MpegAudioScanner::State MpegAudioScanner::state() const {
    return walk_->state();
}

bool MpegAudioScanner::hasMusicAhead() {
    return walk_->hasMusicAhead();
}

const MpegAudioScan& MpegAudioScanner::scan() const {
    return walk_->scan();
}

std::uint64_t MpegAudioScanner::expectedPcmFrames() const {
    return walk_->expectedPcmFrames();
}

} // namespace tamsy
