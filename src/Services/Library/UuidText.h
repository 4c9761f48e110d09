#pragma once

#include <QUuid>

#include <cstddef>
#include <optional>
#include <span>
#include <string_view>

namespace tamsy {

/// The canonical form of a UUID (RFC 4122): groups of 8, 4, 4, 4 and 12 digits with hyphens.
constexpr std::size_t uuidTextSize = 36;

/// Writes `id` in upper case.
void writeUuidText(const QUuid& id, std::span<char, uuidTextSize> out);

/// Reads the canonical form, in either case, and no other.
[[nodiscard]] std::optional<QUuid> readUuidText(std::string_view text);

} // namespace tamsy
