#include "Formats/Inflate.h"

#include <algorithm>
#include <zlib.h>

namespace tamsy::media {

QByteArray inflated(const QByteArray& bytes, qsizetype limit) {
    z_stream stream = {};
    if (inflateInit(&stream) != Z_OK)
        return {};
    stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(bytes.data()));
    stream.avail_in = static_cast<uInt>(bytes.size());
    QByteArray result;
    int status = Z_OK;
    // Grows with the output and never trusts a length from the file.
    while (status == Z_OK && result.size() < limit) {
        const qsizetype start = result.size();
        const qsizetype room = std::min(std::max<qsizetype>(start, 4096), limit - start);
        result.resize(start + room);
        stream.next_out = reinterpret_cast<Bytef*>(result.data() + start);
        stream.avail_out = static_cast<uInt>(room);
        status = inflate(&stream, Z_NO_FLUSH);
        result.truncate(start + room - static_cast<qsizetype>(stream.avail_out));
    }
    inflateEnd(&stream);
    return result;
}

} // namespace tamsy::media
