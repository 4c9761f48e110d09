#pragma once

#include <QByteArrayView>

namespace tamsy {

/// The size of a code unit in an ID3v2 text encoding, in bytes: 2 for UTF-16 with (1) and without
/// (2) a byte order mark, 1 for Latin-1 (0) and UTF-8 (3).
[[nodiscard]] constexpr qsizetype id3UnitSize(char encoding) {
    return encoding == 1 || encoding == 2 ? 2 : 1;
}

/// The offset of the first terminator from `start` on: a zero byte, or an aligned pair of them for
/// units of two bytes. -1 if there is none.
[[nodiscard]] constexpr qsizetype findId3Terminator(QByteArrayView bytes, qsizetype unitSize,
                                                    qsizetype start = 0) {
    for (qsizetype i = start; i + unitSize <= bytes.size(); i += unitSize) {
        if (bytes[i] == '\0' && bytes[i + unitSize - 1] == '\0')
            return i;
    }
    return -1;
}

} // namespace tamsy
