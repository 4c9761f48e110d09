#pragma once

#include <QBuffer>
#include <QByteArray>
#include <QImage>

/// The bytes of a file of this format that holds the picture.
inline QByteArray encoded(const QImage& image, const char* format) {
    QBuffer buffer;
    return image.save(&buffer, format) ? buffer.data() : QByteArray();
}
