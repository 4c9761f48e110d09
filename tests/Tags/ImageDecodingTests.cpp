#include "ProcessorTime.h"
#include "Services/Artwork/CoverFile.h"
#include "Tags/ImageDecoding.h"

#include <QBuffer>
#include <QImageWriter>
#include <QtEndian>
#include <gtest/gtest.h>
#include <zlib.h>

#include <tuple>

using namespace tamsy;

namespace {

QImage square(int side) {
    QImage image(side, side, QImage::Format_RGB32);
    image.fill(Qt::red);
    return image;
}

QByteArray withHeaderSize(QByteArray png, unsigned char high, unsigned char low) {
    for (const int place : {18, 22}) {
        png[place] = static_cast<char>(high);
        png[place + 1] = static_cast<char>(low);
    }
    // The header's checksum must be right, or the size isn't read.
    const quint32 checksum = qToBigEndian(
        static_cast<quint32>(crc32(0, reinterpret_cast<const Bytef*>(png.constData()) + 12, 17)));
    png.replace(29, 4, reinterpret_cast<const char*>(&checksum), 4);
    return png;
}

// 16 × 16 red pixels in CMYK.
const QByteArray cmykJpeg = QByteArray::fromBase64(
    "/9j/7gAOQWRvYmUAZAAAAAAA/9sAQwAGBAUGBQQGBgUGBwcGCAoQCgoJCQoUDg8MEBcUGBgXFBYWGh0lHxobIxwWFiAs"
    "ICMmJykqKRkfLTAtKDAlKCko/8AAFAgAEAAQBEMRAE0RAFkRAEsRAP/EABUAAQEAAAAAAAAAAAAAAAAAAAAI/8QAFBAB"
    "AAAAAAAAAAAAAAAAAAAAAP/aAA4EQwBNAFkASwAAPwCqUqJUVSAAAA//2Q==");

// One white pixel.
const QByteArray gif = QByteArray::fromBase64("R0lGODlhAQABAIAAAP///wAAACwAAAAAAQABAAACAkQBADs=");

TEST(ImageDecoding, ReadsWhatCoversAreMadeOf) {
    for (const char* format : {"png", "jpg", "bmp", "webp", "tiff"}) {
        const QImage image = decodeImage(encoded(square(100), format));
        EXPECT_EQ(image.size(), QSize(100, 100)) << format;
        EXPECT_GT(image.pixelColor(50, 50).red(), 240) << format;
    }
    EXPECT_EQ(decodeImage(gif).pixel(0, 0), 0xFFFFFFFF);
    const QColor separated = decodeImage(cmykJpeg).pixelColor(8, 8);
    EXPECT_GT(separated.red(), 200);
    EXPECT_LT(separated.blue(), 60);
}

TEST(ImageDecoding, ScalesLargePicturesWhileDecoding) {
    for (const char* format : {"png", "jpg"}) {
        const QImage wide = square(100).scaled(5000, 100);
        EXPECT_EQ(decodeImage(encoded(wide, format)).size(), QSize(2048, 40)) << format;
    }
}

TEST(ImageDecoding, GivesAPictureOrNothing) {
    const QByteArray png = encoded(square(100), "png");
    EXPECT_TRUE(decodeImage({}).isNull());
    EXPECT_TRUE(decodeImage("no picture at all").isNull());
    EXPECT_TRUE(
        decodeImage("<svg xmlns='http://www.w3.org/2000/svg' width='9' height='9'/>").isNull());
    EXPECT_TRUE(decodeImage(png.first(40)).isNull());
    EXPECT_TRUE(decodeImage(withHeaderSize(png, 0x75, 0x30)).isNull()) << "30,000 × 30,000";
    const QByteArray jpeg = encoded(square(100), "jpg");
    const QByteArray pass = jpeg.sliced(jpeg.indexOf("\xFF\xDA"));
    EXPECT_TRUE(decodeImage(jpeg.chopped(2) + pass.chopped(2).repeated(200)).isNull());
    for (const qsizetype length : {20, 200, 600})
        (void)decodeImage(jpeg.first(length)); // may fail, but must return
}

QByteArray progressiveJpeg(QSize size) {
    QImage image(size, QImage::Format_RGB32);
    image.fill(Qt::blue);
    QBuffer buffer;
    QImageWriter writer(&buffer, "jpeg");
    writer.setProgressiveScanWrite(true);
    return writer.write(image) ? buffer.data() : QByteArray();
}

TEST(ImageDecoding, TheDamagedPicturesOfAFileShareOneBudget) {
    const QByteArray damaged = encoded(square(2500), "png").chopped(20);
    const double start = processorSeconds();
    PictureBudget budget;
    for (int picture = 0; picture < 400; ++picture)
        EXPECT_TRUE(decodeImage(damaged, budget).isNull());
    EXPECT_LT(processorSeconds() - start, 0.6);
}

TEST(ImageDecoding, HoldsAPicturesMemoryAgainstTheBudget) {
    // Pictures, and the width that they come to, 0 if they are rejected.
    const std::tuple<const char*, QByteArray, int> rows[] = {
        {"progressive, with room for a smaller result", progressiveJpeg({4000, 4000}), 1024},
        {"progressive, too large", progressiveJpeg({6500, 6500}), 0},
        {"in one pass", encoded(square(6500), "jpg"), 2048},
        {"scaled row by row", encoded(square(3000), "png"), 2048},
        {"converted first", encoded(square(4500).convertToFormat(QImage::Format_Indexed8), "png"),
         0},
    };
    for (const auto& [name, bytes, width] : rows)
        EXPECT_EQ(decodeImage(bytes).width(), width) << name;
}

} // namespace
