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

/// What the background of a large window shows: the colours of the cover and the places of the
/// blobs. It steps by the clock while the program can be seen and stands still
/// otherwise. The blobs are chosen once; a new cover changes their colours at once, but during a
/// seek only when that has ended. Interface thread.
class ArtworkGradientModel : public QObject {
    Q_OBJECT
    /// The cover. An empty one leaves the colours as they are.
    Q_PROPERTY(QImage image READ image WRITE setImage NOTIFY imageChanged)
    /// A seek gesture is under way.
    Q_PROPERTY(bool isSeeking READ isSeeking WRITE setIsSeeking NOTIFY isSeekingChanged)
    /// The wide form: more steps a second.
    Q_PROPERTY(bool isFullScreen READ isFullScreen WRITE setIsFullScreen NOTIFY isFullScreenChanged)
    /// Something of the program can be seen. Without it there are no blobs and no steps.
    Q_PROPERTY(bool isActive READ isActive WRITE setIsActive NOTIFY isActiveChanged)
    /// The background itself can be seen. Without it the blobs stay where they are, and no step is
    /// taken.
    Q_PROPERTY(bool canBeSeen READ canBeSeen WRITE setCanBeSeen NOTIFY canBeSeenChanged)
    /// Size of the background, in points.
    Q_PROPERTY(QSizeF area READ area WRITE setArea NOTIFY areaChanged)

    /// The gradient's colours, from the top leading corner to the bottom trailing one.
    Q_PROPERTY(QColor firstColor READ firstColor NOTIFY colorsChanged)
    Q_PROPERTY(QColor secondColor READ secondColor NOTIFY colorsChanged)
    /// How strong the shadow of white text on it must be, 0 to 1.
    Q_PROPERTY(double textShadowStrength READ textShadowStrength NOTIFY colorsChanged)

  public:
    /// Gives the seconds since the reference date.
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
    /// What is shown now; without glow where nothing of the program can be seen.
    [[nodiscard]] GradientScene scene() const;

  Q_SIGNALS:
    void imageChanged();
    void isSeekingChanged();
    void isFullScreenChanged();
    void isActiveChanged();
    void canBeSeenChanged();
    void areaChanged();
    void colorsChanged();
    void blobsChanged(); // of place

  private:
    [[nodiscard]] double interval() const;
    void updateColors();
    void placeBlobs();
    void step();

    const Clock clock_;
    const BlobConfigs blobConfigs_;
    QImage image_;
    QByteArray signature_; // of the last cover, whose colours may still wait for a seek's end
    std::pair<ArtworkColor, ArtworkColor> cachedColors_;
    BubbleColors bubbles_;
    bool hasColors_ = false;
    bool isSeeking_ = false;
    bool isFullScreen_ = false;
    bool isActive_ = true;
    bool canBeSeen_ = true;
    QSizeF area_{0, 0};
    std::array<PlacedBlob, 6> blobs_; // without their colours
    QTimer timer_;                    // one shot, to the start of the next step
};

} // namespace tamsy
