#pragma once

#include <QByteArray>
#include <QString> // concatenates byte arrays, too

namespace tamsy::test {

/// A kind of file and how ffmpeg is told to make it.
struct SoundFile {
    const char* name;
    const char* options = "";
    int channels = 2;
};

/// The path of `file`, `seconds` of a rising tone at 44.1 kHz, made on first demand.
[[nodiscard]] QByteArray soundFile(const SoundFile& file, double seconds = 10);

/// The path of a new file `name` with these bytes; `size` makes it longer by a hole.
[[nodiscard]] QByteArray fileWith(const QByteArray& name, const QByteArray& bytes, qint64 size = 0);

/// All bytes of the file at `path`.
[[nodiscard]] QByteArray bytesOf(const QByteArray& path);

/// Runs ffmpeg with `arguments`, as a shell takes them, inside the folder of the files above.
void ffmpeg(const QByteArray& arguments);

} // namespace tamsy::test
