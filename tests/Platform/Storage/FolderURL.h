#pragma once

#include "Platform/Storage/TemporaryFolder.h"
#include "Utils/FileURL.h"

namespace tamsy {

[[nodiscard]] inline FileURL urlOf(const TemporaryFolder& folder) {
    return FileURL::fromPath(folder.path());
}

[[nodiscard]] inline FileURL urlOf(const TemporaryFolder& folder, const QByteArray& name) {
    return FileURL::fromPath(folder.path(name));
}

} // namespace tamsy
