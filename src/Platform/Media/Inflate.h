#pragma once

#include <QByteArray>

namespace tamsy::media {

/// Undoes zlib compression (RFC 1950). Gives at most 16 MiB, which no tag's value needs; empty if
/// the bytes aren't a whole compressed value.
[[nodiscard]] QByteArray inflated(const QByteArray& bytes);

} // namespace tamsy::media
