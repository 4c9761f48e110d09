#pragma once

#include <QByteArray>

namespace tamsy::media {

/// Undoes zlib compression (RFC 1950) up to `limit` bytes, a thousand of which may stand in one.
/// Where the bytes are damaged or cut off, what came out before is given.
[[nodiscard]] QByteArray inflated(const QByteArray& bytes, qsizetype limit);

} // namespace tamsy::media
