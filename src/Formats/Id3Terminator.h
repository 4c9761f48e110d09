#pragma once

#include <QByteArrayView>

namespace tamsy {

/// Bytes of a code unit in one of ID3v2's text encodings: UTF-16 with (1) and without (2) a byte
/// order mark has two, Latin-1 (0) and UTF-8 (3) have one.
[[nodiscard]] constexpr qsizetype id3UnitSize(char encoding) {
    return encoding == 1 || encoding == 2 ? 2 : 1;
}

/// Where the first terminator is, from `start` on: a zero byte, or an aligned pair of them for a
/// unit of two. -1 if there is none.
[[nodiscard]] constexpr qsizetype findId3Terminator(QByteArrayView bytes, qsizetype unitSize,
                                                    qsizetype start = 0) {
    for (qsizetype i = start; i + unitSize <= bytes.size(); i += unitSize) {
        if (bytes[i] == '\0' && bytes[i + unitSize - 1] == '\0')
            return i;
    }
    return -1;
}

} // namespace tamsy
