#pragma once

#include "Utils/FileURL.h"

#include <QUrl>

#include <optional>

namespace tamsy {

/// The file or folder that the toolkit names by `url`, made anew from its bytes, so that it is
/// escaped as all our addresses are. Nothing for what isn't on this machine.
[[nodiscard]] inline std::optional<FileURL> localAddress(const QUrl& url) {
    const auto address = FileURL::fromAbsoluteString(url.toEncoded(QUrl::FullyEncoded));
    return address ? std::optional(FileURL::fromPath(address->path())) : std::nullopt;
}

} // namespace tamsy
