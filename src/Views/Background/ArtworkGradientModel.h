#pragma once

#include "Views/Background/ArtworkColors.h"
#include "Views/Background/GradientBlobs.h"
#include "Views/Background/GradientScene.h"

#include <QColor>
#include <QImage>
#include <QObject>
#include <QSizeF>
#include <QTimer>

#include <functional>

namespace tamsy {

/// The state of the Now Playing window's background: the colours of the cover and the time that the
/// blobs' positions depend on. The time advances in steps while the background can be seen. The
/// blobs are chosen once; a new cover changes their colours at once or, during a seek, at its end.
/// Interface thread.
class ArtworkGradientModel : public QObject {
    Q_OBJECT
    /// The cover. A null one leaves the colours unchanged.
    Q_PROPERTY(QImage image READ image WRITE setImage NOTIFY imageChanged)
    /// Whether a seek gesture is under way.
    Q_PROPERTY(bool isSeeking READ isSeeking WRITE setIsSeeking NOTIFY isSeekingChanged)
    /// The wide layout, which has more steps per second.
    Q_PROPERTY(bool isFullScreen READ isFullScreen WRITE setIsFullScreen NOTIFY isFullScreenChanged)
    /// Whether any part of the program can be seen. If not, there are no blobs and no steps.
    Q_PROPERTY(bool isActive READ isActive WRITE setIsActive NOTIFY isActiveChanged)
    /// Whether the background itself can be seen. If not, the blobs stand still.
    Q_PROPERTY(bool canBeSeen READ canBeSeen WRITE setCanBeSeen NOTIFY canBeSeenChanged)
    /// The size of the background in points.
    Q_PROPERTY(QSizeF area READ area WRITE setArea NOTIFY areaChanged)

    /// The gradient's colours, at the top left and the bottom right corner.
    Q_PROPERTY(QColor firstColor READ firstColor NOTIFY colorsChanged)
    Q_PROPERTY(QColor secondColor READ secondColor NOTIFY colorsChanged)
    /// The strength that the shadow of white text on it needs, 0 to 1.
    Q_PROPERTY(double textShadowStrength READ textShadowStrength NOTIFY colorsChanged)

  public:
    /// Returns the seconds since the reference date.
    using Clock = std::function<double()>;

    explicit ArtworkGradientModel(QObject* parent = nullptr);
    ArtworkGradientModel(Clock clock, const BlobConfigs& blobConfigs, QObject* parent = nullptr);

    [[nodiscard]] QImage image() const { return image_; }
    void setImage(const QImage& image);
    [[nodiscard]] bool isSeeking() const { return isSeeking_; }
    void setIsSeeking(bool isSeeking);
    [[nodiscard]] bool isFullScreen() const { return isFullScreen_; }
    void setIsFullScreen(bool isFullScreen);
    [[nodiscard]] bool isActive() const { return isActive_; }
    void setIsActive(bool isActive);
    [[nodiscard]] bool canBeSeen() const { return canBeSeen_; }
    void setCanBeSeen(bool canBeSeen);
    [[nodiscard]] QSizeF area() const { return area_; }
    void setArea(QSizeF area);

    [[nodiscard]] QColor firstColor() const { return cachedColors_.first.toColor(); }
    [[nodiscard]] QColor secondColor() const { return cachedColors_.second.toColor(); }
    [[nodiscard]] double textShadowStrength() const;
    /// What to draw now.
    [[nodiscard]] GradientScene scene() const;

  Q_SIGNALS:
    void imageChanged();
    void isSeekingChanged();
    void isFullScreenChanged();
    void isActiveChanged();
    void canBeSeenChanged();
    void areaChanged();
    void colorsChanged();
    void blobsChanged(); // their positions

  private:
    [[nodiscard]] double interval() const;
    void updateColors();
    void updateTime();
    void step();

    const Clock clock_;
    const BlobConfigs blobConfigs_;
    QImage image_;
    QByteArray signature_; // of the last cover, even if its colours wait for the end of a seek
    std::pair<ArtworkColor, ArtworkColor> cachedColors_;
    BubbleColors bubbles_;
    bool hasColors_ = false;
    bool isSeeking_ = false;
    bool isFullScreen_ = false;
    bool isActive_ = true;
    bool canBeSeen_ = true;
    QSizeF area_{0, 0};
    double time_ = 0; // of the last step
    QTimer timer_;    // to the start of the next step
};

} // namespace tamsy
