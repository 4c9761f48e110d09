#pragma once

#include "Services/Artwork/ArtworkLoader.h"
#include "Utils/FileURL.h"

#include <QByteArray>
#include <QImage>
#include <QObject>
#include <QString>
#include <QtQml/qqmlregistration.h>

namespace tamsy {

/// The thumbnail of a row while the row is on screen: requested when it appears, cancelled when it
/// leaves before the answer. A row that is reused for another track never shows the previous one's
/// cover. Interface thread.
class Thumbnail : public QObject {
    Q_OBJECT
    QML_ELEMENT
    /// The track's address; an empty one requests nothing.
    Q_PROPERTY(QString address READ address WRITE setAddress NOTIFY addressChanged)
    /// Whether the row is on screen.
    Q_PROPERTY(bool isShown READ isShown WRITE setIsShown NOTIFY isShownChanged)
    /// Null until the cover has loaded, and if there is none.
    Q_PROPERTY(QImage image READ image NOTIFY imageChanged)
    Q_PROPERTY(bool hasImage READ hasImage NOTIFY imageChanged)

  public:
    using QObject::QObject;
    ~Thumbnail() override;
    Thumbnail(const Thumbnail&) = delete;
    Thumbnail& operator=(const Thumbnail&) = delete;
    Thumbnail(Thumbnail&&) = delete;
    Thumbnail& operator=(Thumbnail&&) = delete;

    [[nodiscard]] QString address() const { return QString::fromUtf8(url_.absoluteString()); }
    void setAddress(const QString& address);
    [[nodiscard]] bool isShown() const { return isShown_; }
    void setIsShown(bool isShown);
    [[nodiscard]] QImage image() const { return loadedImage_; }
    [[nodiscard]] bool hasImage() const { return !loadedImage_.isNull(); }

  Q_SIGNALS:
    void addressChanged();
    void isShownChanged();
    void imageChanged();

  private:
    void appear();
    void disappear();
    void setImage(const QImage& image);

    FileURL url_;
    QImage loadedImage_;
    QByteArray taskKey_; // the key of the running load, or empty
    bool isShown_ = true;
};

} // namespace tamsy
