#pragma once

#include <QImage>
#include <QString>

namespace tamsy {

/// What an audio file says about itself. A blank record has empty texts, a duration of 0 and no
/// artwork. A plain value.
struct AudioMetadata {
    /// May be empty; there is no placeholder for an unknown one at this level.
    QString title;
    QString artist;
    QString album;
    /// Seconds; 0 when the length is unknown, never NaN or infinite.
    double duration = 0;
    /// The decoded cover; null when there is none or when it wasn't asked for.
    QImage artwork;
};

} // namespace tamsy
