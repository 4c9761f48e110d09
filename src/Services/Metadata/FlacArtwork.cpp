#include "Services/Metadata/FlacArtwork.h"

#include "Formats/ByteWindow.h"
#include "Formats/FlacBlock.h"
#include "Tags/ImageDecoding.h"
#include "Utils/FileURL.h"

namespace tamsy {

namespace {

constexpr std::uint64_t minFileSize = 9;

} // namespace

QImage flacEmbeddedArtwork(const FileURL& url, PictureBudget& budget) {
    const media::SharedSource file = media::openFileSource(url);
    if (!file || file->size() < minFileSize)
        return {};
    media::ByteWindow window(*file);
    if (!window.matches(0, "fLaC"))
        return {};
    media::FlacBlockWalk walk(window, 0);
    while (const auto block = walk.next()) {
        if (block->type != media::FlacBlockHeader::Picture)
            continue;
        const std::uint64_t length = block->end - block->begin;
        if (!budget.takeBytes(static_cast<qint64>(length)))
            return {};
        const QByteArray body = file->copy(block->begin, length);
        QImage image = parseFlacPictureBlock(std::as_bytes(std::span(body)), budget);
        if (!image.isNull())
            return image;
    }
    return {};
}

QImage parseFlacPictureBlock(ByteCursor::Bytes body, PictureBudget& budget) {
    const auto picture = media::pictureInFlacBlock(body);
    if (!picture)
        return {};
    return decodeImage(QByteArray::fromRawData(reinterpret_cast<const char*>(picture->data()),
                                               static_cast<qsizetype>(picture->size())),
                       budget);
}

} // namespace tamsy
