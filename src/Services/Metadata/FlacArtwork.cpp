#include "Services/Metadata/FlacArtwork.h"

#include "Formats/ByteWindow.h"
#include "Tags/ImageDecoding.h"
#include "Utils/FileURL.h"

namespace tamsy {

namespace {

constexpr std::uint64_t smallestFile = 9;
constexpr std::uint64_t headerSize = 4;
constexpr std::uint8_t lastBlockFlag = 0x80;
constexpr std::uint8_t pictureBlock = 6;

/// Passes over a length and as many bytes as it says.
bool skipText(ByteCursor& cursor) {
    const auto length = cursor.readU32();
    return length && cursor.skip(*length);
}

} // namespace

QImage flacEmbeddedArtwork(const FileURL& url, PictureBudget& budget) {
    const media::SharedSource file = media::openFileSource(url);
    if (!file || file->size() < smallestFile)
        return {};
    media::ByteWindow window(*file);
    if (!window.matches(0, "fLaC"))
        return {};
    std::uint64_t position = headerSize;
    while (true) {
        ByteCursor header(window.read(position, headerSize));
        const auto flagAndType = header.readU8();
        const auto length = header.readU24();
        const std::uint64_t body = position + headerSize;
        if (!length || *length > window.size() - body)
            return {};
        if ((*flagAndType & ~lastBlockFlag) == pictureBlock) {
            if (!budget.takeBytes(*length))
                return {};
            const QByteArray block = file->copy(body, *length);
            QImage image = parseFlacPictureBlock(std::as_bytes(std::span(block)), budget);
            if (!image.isNull())
                return image;
        }
        if ((*flagAndType & lastBlockFlag) != 0)
            return {};
        position = body + *length;
    }
}

QImage parseFlacPictureBlock(ByteCursor::Bytes body, PictureBudget& budget) {
    constexpr std::uint64_t dimensionsSize = 16; // width, height, depth, colours
    ByteCursor cursor(body);
    if (!cursor.readU32() || !skipText(cursor) || !skipText(cursor) || !cursor.skip(dimensionsSize))
        return {};
    const auto length = cursor.readU32();
    const auto picture = length ? cursor.readBytes(*length) : std::nullopt;
    if (!picture)
        return {};
    return decodeImage(QByteArray::fromRawData(reinterpret_cast<const char*>(picture->data()),
                                               static_cast<qsizetype>(picture->size())),
                       budget);
}

} // namespace tamsy
