#include "Tags/Mp4.h"

#include "Tags/Mp4Fragments.h"
#include "Tags/Mp4Tags.h"

namespace tamsy::media {

namespace {

constexpr int maxAtoms = 100'000;

class Mp4Reader {
  public:
    explicit Mp4Reader(MediaParse& parse)
        : parse_(parse), tags_(parse, atomsLeft_), fragments_(parse.window, atomsLeft_) {}

    double read(std::uint64_t offset) {
        Mp4AtomWalk walk(parse_.window, atomsLeft_, offset, parse_.window.size());
        while (const auto atom = walk.next()) {
            if (atom->is("moov"))
                readMovie(*atom);
            else if (atom->is("moof") && isSummed_)
                fragments_.addFragment(*atom);
            reached_ = atom->end;
            if (atom->is("moov") && !isSummed_)
                break;
        }
        return duration();
    }

  private:
    void readMovie(const Mp4Atom& movie) {
        Mp4AtomWalk walk(parse_.window, atomsLeft_, movie.body, movie.end);
        while (const auto atom = walk.next()) {
            if (atom->is("mvhd"))
                readMovieHeader(*atom);
            else if (atom->is("trak") && parse_.wantsDuration)
                fragments_.addTrack(*atom);
            else if (atom->is("mvex") && parse_.wantsDuration)
                readMovieExtends(*atom);
            else if (atom->is("udta"))
                tags_.readUserData(*atom);
            else if (atom->is("meta"))
                tags_.readMeta(*atom);
        }
    }

    void readMovieHeader(const Mp4Atom& atom) {
        ByteCursor cursor(parse_.window.read(atom.body, std::min<std::uint64_t>(atom.size(), 32)));
        const bool isLong = cursor.readU8() == 1;
        if (!cursor.skip(isLong ? 19 : 11))
            return;
        timescale_ = cursor.readU32().value_or(0);
        setSeconds(readUnits(cursor, isLong), isLong);
    }

    void readMovieExtends(const Mp4Atom& extends) {
        isFragmented_ = true;
        isSummed_ = true;
        Mp4AtomWalk walk(parse_.window, atomsLeft_, extends.body, extends.end);
        while (const auto atom = walk.next()) {
            ByteCursor cursor(
                parse_.window.read(atom->body, std::min<std::uint64_t>(atom->size(), 24)));
            const bool isLong = cursor.readU8() == 1;
            if (!cursor.skip(3))
                continue;
            if (atom->is("mehd"))
                isSummed_ = !setSeconds(readUnits(cursor, isLong), isLong);
            else if (atom->is("trex"))
                fragments_.addDefaults(cursor);
        }
    }

    static std::uint64_t readUnits(ByteCursor& cursor, bool isLong) {
        return isLong ? cursor.readU64().value_or(0) : cursor.readU32().value_or(0);
    }

    // All bits set means unknown.
    bool setSeconds(std::uint64_t units, bool isLong) {
        const std::uint64_t unknown = isLong ? UINT64_MAX : UINT32_MAX;
        if (timescale_ == 0 || units == 0 || units == unknown)
            return false;
        seconds_ = static_cast<double>(units) / timescale_;
        return true;
    }

    // Extrapolates to what the limits left unread.
    [[nodiscard]] double duration() const {
        const double sound = isFragmented_ ? 0 : fragments_.soundSeconds(timescale_);
        if (!isSummed_ || reached_ == 0)
            return sound > 0 ? sound : seconds_;
        const double part =
            static_cast<double>(reached_) / static_cast<double>(parse_.window.size());
        return seconds_ + fragments_.seconds() / part;
    }

    MediaParse& parse_;
    int atomsLeft_ = maxAtoms;
    Mp4Tags tags_;
    Mp4Fragments fragments_;
    std::uint32_t timescale_ = 0;
    bool isFragmented_ = false;
    bool isSummed_ = false;
    double seconds_ = 0;
    std::uint64_t reached_ = 0;
};

} // namespace

double readMp4(MediaParse& parse, std::uint64_t offset) {
    return Mp4Reader(parse).read(offset);
}

} // namespace tamsy::media
