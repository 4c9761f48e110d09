#include "Tags/Mp4Fragments.h"

#include <algorithm>
#include <bit>

namespace tamsy::media {

namespace {

// Flags of a fragment's header (tfhd) and of a run of samples (trun).
constexpr std::uint32_t hasBaseOffset = 0x1;
constexpr std::uint32_t hasDescription = 0x2;
constexpr std::uint32_t hasDefaultDuration = 0x8;
constexpr std::uint32_t hasDataOffset = 0x1;
constexpr std::uint32_t hasFirstFlags = 0x4;
constexpr std::uint32_t hasSampleDuration = 0x100;
constexpr std::uint32_t sampleFields = 0xF00;

} // namespace

void Mp4Fragments::addTrack(const Mp4Atom& track) {
    Track found;
    Mp4AtomWalk walk(window_, atomsLeft_, track.body, track.end);
    while (const auto child = walk.next()) {
        const bool isFolder = child->is("mdia") || child->is("edts");
        if (!isFolder) {
            readTrackPart(*child, found);
            continue;
        }
        Mp4AtomWalk media(window_, atomsLeft_, child->body, child->end);
        while (const auto part = media.next())
            readTrackPart(*part, found);
    }
    if (found.timescale != 0 && tracks_.size() < 64)
        tracks_.push_back(found);
}

void Mp4Fragments::readTrackPart(const Mp4Atom& atom, Track& track) {
    const auto bytes = window_.readUpTo(atom.body, 36);
    ByteCursor cursor(bytes.first(std::min<std::uint64_t>(bytes.size(), atom.size())));
    const bool isLong = cursor.readU8() == 1;
    const std::uint64_t timesSize = isLong ? 16 : 8;
    if (atom.is("tkhd") && cursor.skip(3 + timesSize))
        track.id = cursor.readU32().value_or(0);
    else if (atom.is("mdhd") && cursor.skip(3 + timesSize)) {
        track.timescale = cursor.readU32().value_or(0);
        track.mediaUnits = isLong ? cursor.readU64().value_or(0) : cursor.readU32().value_or(0);
    } else if (atom.is("elst"))
        readEdits(atom, isLong, track);
    else if (atom.is("hdlr") && cursor.skip(7))
        track.isSound = cursor.readU32() == 0x736F756E; // "soun"
}

/// An edit without a media time is leading silence, which no player plays.
void Mp4Fragments::readEdits(const Mp4Atom& list, bool isLong, Track& track) {
    constexpr std::uint64_t headerSize = 8;
    constexpr int maxEdits = 100;
    const std::uint64_t size = isLong ? 20 : 12;
    std::uint64_t offset = list.body + headerSize;
    for (int i = 0; i < maxEdits && offset + size <= list.end; ++i, offset += size) {
        ByteCursor cursor(window_.read(offset, size));
        const std::uint64_t length =
            isLong ? cursor.readU64().value_or(0) : cursor.readU32().value_or(0);
        const bool isEmpty =
            isLong ? cursor.readU64() == UINT64_MAX : cursor.readU32() == UINT32_MAX;
        track.editUnits += isEmpty ? 0 : length;
    }
}

void Mp4Fragments::addDefaults(ByteCursor cursor) {
    Track* track = find(cursor.readU32().value_or(0));
    if (track && cursor.skip(4))
        track->sampleDuration = cursor.readU32().value_or(0);
}

void Mp4Fragments::addFragment(const Mp4Atom& fragment) {
    Mp4AtomWalk walk(window_, atomsLeft_, fragment.body, fragment.end);
    while (const auto atom = walk.next()) {
        if (atom->is("traf"))
            addTrackFragment(*atom);
    }
}

void Mp4Fragments::addTrackFragment(const Mp4Atom& fragment) {
    Track* track = nullptr;
    std::uint32_t sampleDuration = 0;
    Mp4AtomWalk walk(window_, atomsLeft_, fragment.body, fragment.end);
    while (const auto atom = walk.next()) {
        if (atom->is("tfhd")) {
            ByteCursor cursor(window_.read(atom->body, std::min<std::uint64_t>(atom->size(), 24)));
            const std::uint32_t flags = cursor.readU32().value_or(0);
            track = find(cursor.readU32().value_or(0));
            sampleDuration = track ? track->sampleDuration : 0;
            const std::uint64_t between = ((flags & hasBaseOffset) != 0 ? 8U : 0U) +
                                          ((flags & hasDescription) != 0 ? 4U : 0U);
            if ((flags & hasDefaultDuration) != 0 && cursor.skip(between))
                sampleDuration = cursor.readU32().value_or(sampleDuration);
        } else if (atom->is("trun") && track) {
            addRun(*atom, *track, sampleDuration);
        }
    }
}

void Mp4Fragments::addRun(const Mp4Atom& run, Track& track, std::uint32_t sampleDuration) {
    ByteCursor cursor(window_.read(run.body, std::min<std::uint64_t>(run.size(), 8)));
    const std::uint32_t flags = cursor.readU32().value_or(0);
    const std::uint32_t samples = cursor.readU32().value_or(0);
    if ((flags & hasSampleDuration) == 0) {
        track.units += std::uint64_t{samples} * sampleDuration;
        return;
    }
    const std::uint64_t stride =
        4 * static_cast<std::uint64_t>(std::popcount(flags & sampleFields));
    std::uint64_t position = run.body + 8 + ((flags & hasDataOffset) != 0 ? 4U : 0U) +
                             ((flags & hasFirstFlags) != 0 ? 4U : 0U);
    for (std::uint32_t i = 0; i < samples && samplesLeft_ > 0; ++i, --samplesLeft_) {
        if (position + stride > run.end)
            break;
        track.units += ByteCursor(window_.read(position, 4)).readU32().value_or(0);
        position += stride;
    }
}

double Mp4Fragments::soundSeconds(std::uint32_t movieTimescale) const {
    const auto sound = std::ranges::find_if(tracks_, &Track::isSound);
    if (sound == tracks_.end())
        return 0;
    if (sound->editUnits != 0 && movieTimescale != 0)
        return static_cast<double>(sound->editUnits) / movieTimescale;
    const bool isKnown = sound->mediaUnits != UINT32_MAX && sound->mediaUnits != UINT64_MAX;
    return isKnown ? static_cast<double>(sound->mediaUnits) / sound->timescale : 0;
}

double Mp4Fragments::seconds() const {
    const auto sound = std::ranges::find_if(tracks_, &Track::isSound);
    const auto track = sound != tracks_.end() ? sound : tracks_.begin();
    return track == tracks_.end() ? 0 : static_cast<double>(track->units) / track->timescale;
}

Mp4Fragments::Track* Mp4Fragments::find(std::uint32_t id) {
    const auto found = std::ranges::find(tracks_, id, &Track::id);
    return found == tracks_.end() ? nullptr : &*found;
}

} // namespace tamsy::media
