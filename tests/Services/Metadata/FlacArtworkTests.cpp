#include "Services/Metadata/FlacArtwork.h"

#include "Services/Artwork/CoverFile.h"
#include "Tags/MemoryFile.h"

#include <gtest/gtest.h>

#include <string>

using namespace tamsy;
using namespace std::string_literals;

namespace {

constexpr char last = '\x80';
constexpr char picture = 6;
constexpr char padding = 1;

std::string big(std::size_t value, int bytes) {
    std::string text;
    for (int shift = 8 * (bytes - 1); shift >= 0; shift -= 8)
        text += static_cast<char>(value >> shift & 0xFF);
    return text;
}

/// A PNG file of 8 by 8 pixels.
std::string png(QColor colour) {
    QImage image(8, 8, QImage::Format_RGB32);
    image.fill(colour);
    return encoded(image, "png").toStdString();
}

std::string body(const std::string& data, std::size_t claimed) {
    return big(3, 4) + big(9, 4) + "image/png" + big(2, 4) + "\xE5\x9B" + std::string(16, '\0') +
           big(claimed, 4) + data;
}

std::string body(const std::string& data) {
    return body(data, data.size());
}

std::string block(int flagAndType, const std::string& content, std::size_t longer = 0) {
    return static_cast<char>(flagAndType) + big(content.size() + longer, 3) + content;
}

struct Row {
    const char* name;
    std::string bytes;
    QColor found = {}; ///< invalid: no picture
};

TEST(FlacArtwork, IsTheFirstPictureThatDecodes) {
    const std::string red = body(png(Qt::red));
    const std::string blue = body(png(Qt::blue));
    const std::string broken = body("no picture");
    const Row rows[] = {
        {"only block", "fLaC" + block(last | picture, red), Qt::red},
        {"first of two", "fLaC" + block(picture, red) + block(last | picture, blue), Qt::red},
        {"damaged, then good", "fLaC" + block(picture, broken) + block(last | picture, blue),
         Qt::blue},
        {"empty, then good", "fLaC" + block(picture, body({})) + block(picture, blue), Qt::blue},
        {"data cut, then good",
         "fLaC" + block(picture, body(png(Qt::red), 9999)) + block(picture, blue), Qt::blue},
        {"bytes behind the data", "fLaC" + block(picture, red + "more"), Qt::red},
        {"damaged and last", "fLaC" + block(last | picture, broken) + block(picture, red)},
        {"other block last", "fLaC" + block(last | padding, "xx") + block(picture, red)},
        {"other block reaches the end", "fLaC" + block(padding, "xx")},
        {"past the end", "fLaC" + block(last | picture, red, 1)},
        {"behind a length past the end", "fLaC" + block(padding, "xx", 9999) + block(picture, red)},
        {"behind a foreign signature", "fLaD" + block(picture, red)},
        {"behind another tag", "ID3\3\0\0\0\0\0\0"s + "fLaC" + block(picture, red)},
        {"nothing", {}},
    };
    for (const Row& row : rows) {
        MemoryFile file;
        file.append(row.bytes);
        PictureBudget budget;
        const QImage image = flacEmbeddedArtwork(file.url(), budget);
        EXPECT_EQ(image.isNull() ? QColor() : image.pixelColor(4, 4), row.found) << row.name;
    }
}

TEST(FlacArtwork, HoldsEveryLengthOfABlockAgainstItsEnd) {
    const std::string whole = body(png(Qt::red));
    const auto isPicture = [](std::string_view bytes) {
        PictureBudget budget;
        return !parseFlacPictureBlock(std::as_bytes(std::span(bytes)), budget).isNull();
    };
    EXPECT_TRUE(isPicture(whole));
    for (std::size_t length = 0; length < whole.size(); ++length)
        EXPECT_FALSE(isPicture(std::string_view(whole).substr(0, length))) << length;
    for (const std::size_t place : {4U, 17U}) {
        std::string lying = whole;
        lying.replace(place, 4, "\xFF\xFF\xFF\xFF");
        EXPECT_FALSE(isPicture(lying)) << place;
    }
}

} // namespace
