#pragma once

#include <QQuickImageProvider>

namespace tamsy {

/// Pictures of the covers column, rounded here so that a row needs no clipping layer. The one
/// picture there is, "fallback", stands for a track whose cover isn't known.
class CoverProvider : public QQuickImageProvider {
  public:
    CoverProvider();

    QImage requestImage(const QString& id, QSize* size, const QSize& requestedSize) override;
};

} // namespace tamsy
