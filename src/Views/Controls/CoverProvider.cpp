#include "Views/Controls/CoverProvider.h"

#include <QImage>
#include <QPainter>
#include <QPainterPath>

namespace tamsy {
namespace {

/// A thumbnail's corner radius relative to its side: 4 of 28 points.
constexpr double cornerShare = 4.0 / 28.0;

QImage rounded(const QImage& square) {
    QImage result(square.size(), QImage::Format_ARGB32_Premultiplied);
    result.fill(Qt::transparent);
    QPainter painter(&result);
    painter.setRenderHint(QPainter::Antialiasing);
    QPainterPath outline;
    const double radius = square.width() * cornerShare;
    outline.addRoundedRect(QRectF(result.rect()), radius, radius);
    painter.setClipPath(outline);
    painter.drawImage(0, 0, square);
    return result;
}

} // namespace

CoverProvider::CoverProvider() : QQuickImageProvider(QQuickImageProvider::Image) {}

QImage CoverProvider::requestImage(const QString& /*id*/, QSize* size, const QSize& requestedSize) {
    static const QImage fallbackCover(QStringLiteral(":/FallbackCover.png"));
    const QSize wanted = requestedSize.isValid() ? requestedSize : fallbackCover.size();
    const QImage scaled =
        fallbackCover.scaled(wanted, Qt::KeepAspectRatioByExpanding, Qt::SmoothTransformation);
    if (size != nullptr)
        *size = scaled.size();
    return scaled.isNull() ? scaled : rounded(scaled);
}

} // namespace tamsy
