#include "Services/Artwork/FallbackCover.h"

#include <QString>

namespace tamsy {

QImage fallbackCover() {
    static const QImage cover = [] {
        QImage image(QStringLiteral(":/FallbackCover.png"));
        return image.isNull() ? QImage(QStringLiteral(":/封面.png")) : image;
    }();
    return cover;
}

} // namespace tamsy
