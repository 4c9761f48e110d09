#pragma once

#include "Formats/Mp4Atom.h"

#include <vector>

namespace tamsy::media {

/// Sums the samples of a fragmented file, whose header has no duration.
class Mp4Fragments {
  public:
    Mp4Fragments(ByteWindow& window, int& atomsLeft) : window_(window), atomsLeft_(atomsLeft) {}

    /// Adds a track of the movie atom. The first sound track is summed, else the first track.
    void addTrack(const Mp4Atom& track);

    /// Reads a track's defaults for fragments: `cursor` is in a `trex` atom, after its version and
    /// flags.
    void addDefaults(ByteCursor cursor);

    /// Adds the samples of one `moof` atom.
    void addFragment(const Mp4Atom& fragment);

    /// The length that the header states for the audio track, which the pictures of a film may
    /// outlast; 0 if it states none.
    [[nodiscard]] double soundSeconds(std::uint32_t movieTimescale) const;

    /// The duration of all fragments added; 0 without a track.
    [[nodiscard]] double seconds() const;

  private:
    struct Track {
        std::uint32_t id = 0;
        std::uint32_t timescale = 0;
        std::uint32_t sampleDuration = 0;
        bool isSound = false;
        std::uint64_t mediaUnits = 0; ///< length in the track's own header
        std::uint64_t editUnits = 0;  ///< length in its edit list, in the movie's timescale
        std::uint64_t units = 0;
    };

    void readTrackPart(const Mp4Atom& atom, Track& track);
    void readEdits(const Mp4Atom& list, bool isLong, Track& track);
    void addTrackFragment(const Mp4Atom& fragment);
    void addRun(const Mp4Atom& run, Track& track, std::uint32_t sampleDuration);
    [[nodiscard]] Track* find(std::uint32_t id);

    ByteWindow& window_;
    int& atomsLeft_;
    std::uint64_t samplesLeft_ = 1'000'000;
    std::vector<Track> tracks_;
};

} // namespace tamsy::media
