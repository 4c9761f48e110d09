#include "Utils/BaseDirectory.h"

#include <utility>

namespace tamsy {
namespace {

std::pair<const char*, const char*> variableAndDefault(BaseDirectory kind) {
    switch (kind) {
    case BaseDirectory::Config:
        return {"XDG_CONFIG_HOME", "/.config"};
    case BaseDirectory::Data:
        return {"XDG_DATA_HOME", "/.local/share"};
    case BaseDirectory::State:
        break;
    }
    return {"XDG_STATE_HOME", "/.local/state"};
}

} // namespace

QByteArray baseDirectory(BaseDirectory kind) {
    const auto [variable, fallback] = variableAndDefault(kind);
    QByteArray base = qgetenv(variable);
    if (!base.startsWith('/'))
        base = qgetenv("HOME").append(fallback);
    return base;
}

} // namespace tamsy
