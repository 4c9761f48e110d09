#pragma once

#include <QQuickImageProvider>

namespace tamsy {

/// Provides "fallback", the thumbnail of a track without a cover, with rounded corners, so that a
/// row needs no clipping layer.
class CoverProvider : public QQuickImageProvider {
  public:
    CoverProvider();

    QImage requestImage(const QString& id, QSize* size, const QSize& requestedSize) override;
};

} // namespace tamsy
