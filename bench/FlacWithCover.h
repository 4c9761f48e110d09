#pragma once

#include "Services/Artwork/CoverFile.h"

#include <QtEndian>

/// A FLAC file (RFC 9639) that consists of a single PICTURE block.
inline QByteArray flacWithCover(const QImage& cover, const char* format) {
    const QByteArray picture = encoded(cover, format);
    const auto number = [](qsizetype value) {
        const quint32 bigEndian = qToBigEndian(static_cast<quint32>(value));
        return QByteArray(reinterpret_cast<const char*>(&bigEndian), sizeof bigEndian);
    };
    constexpr int frontCover = 3;
    const QByteArray type = QByteArray("image/") + format;
    QByteArray block = number(frontCover) + number(type.size()) + type + number(0);
    for (const int value : {cover.width(), cover.height(), cover.depth(), 0})
        block += number(value);
    block += number(picture.size()) + picture;
    return "fLaC\x86" + number(block.size()).last(3) + block;
}
