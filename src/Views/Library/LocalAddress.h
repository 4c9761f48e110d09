#pragma once

#include "Utils/FileURL.h"

#include <QUrl>

#include <optional>

namespace tamsy {

/// Converts a `QUrl` to our form of escaping. Nothing if it isn't a local file or folder.
[[nodiscard]] inline std::optional<FileURL> localAddress(const QUrl& url) {
    const auto address = FileURL::fromAbsoluteString(url.toEncoded(QUrl::FullyEncoded));
    return address ? std::optional(FileURL::fromPath(address->path())) : std::nullopt;
}

} // namespace tamsy
