#pragma once

#include "Utils/FileURL.h"

#include <QList>
#include <QString>
#include <QUuid>

namespace tamsy {

/// A playable audio file with the tags read from it. A rescan makes a new record; no field changes
/// after construction. Copies share their texts.
struct Track {
    QUuid id;              ///< identity of this record
    FileURL url;           ///< location of the audio file
    QString title;         ///< display title
    QString artist;        ///< may be empty
    QString album;         ///< may be empty
    double duration = 0;   ///< seconds; zero, negative or not finite when unknown
    QString fileExtension; ///< without the dot, as stored by the scan

    /// Minutes and seconds, or "--:--" if the duration isn't a finite number above zero.
    [[nodiscard]] QString durationFormatted() const;

    /// Compares identity only: two records of one file differ.
    friend bool operator==(const Track& a, const Track& b) { return a.id == b.id; }
    friend size_t qHash(const Track& track, size_t seed = 0) { return qHash(track.id, seed); }
};

/// A track list in library order. Copies share their storage until one is changed.
using TrackList = QList<Track>;

} // namespace tamsy

Q_DECLARE_TYPEINFO(tamsy::Track, Q_RELOCATABLE_TYPE); // lists of 100,000 grow and shrink
