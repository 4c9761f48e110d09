#pragma once

#include <QList>
#include <QString>

namespace tamsy {

/// One line of lyrics.
struct LyricsLine {
    double time = 0; ///< seconds from the start of the track; 0 in plain lyrics
    QString text;    ///< trimmed, never empty

    friend bool operator==(const LyricsLine&, const LyricsLine&) = default;
};

/// The lyrics of a track. Synced lyrics have at least one line and ascend in time; plain lyrics
/// have no times and may have no lines. Copies share their lines.
struct Lyrics {
    QList<LyricsLine> lines; ///< in the order in which they are shown
    bool isSynced = false;   ///< whether the lines carry real times

    /// The value for a track without lyrics: no lines, not synced.
    static const Lyrics empty;

    friend bool operator==(const Lyrics&, const Lyrics&) = default;
};

inline const Lyrics Lyrics::empty{};

} // namespace tamsy
