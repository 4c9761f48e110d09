#pragma once

#include <QImage>
#include <QString>

namespace tamsy {

/// An audio file's tags and duration. A blank record has empty texts, a duration of 0 and no
/// artwork.
struct AudioMetadata {
    /// May be empty: there are no placeholders at this level.
    QString title;
    QString artist;
    QString album;
    /// Seconds; 0 if unknown, never NaN or infinite.
    double duration = 0;
    /// The decoded cover; null if there is none or it wasn't requested.
    QImage artwork;
};

} // namespace tamsy
