#pragma once

#include <QByteArray>

namespace tamsy::media {

/// Decompresses zlib data (RFC 1950) up to `limit` bytes; it can expand a thousandfold. If the data
/// is damaged or truncated, returns the output up to there.
[[nodiscard]] QByteArray inflated(const QByteArray& bytes, qsizetype limit);

} // namespace tamsy::media
