#pragma once

#include <QByteArray>
#include <QByteArrayView>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

/// Each target defines this: it feeds one input to one parser and aborts if a guarantee is broken.
/// Returns 0.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace tamsy::fuzz {

inline std::string_view asText(const std::uint8_t* data, std::size_t size) {
    return {reinterpret_cast<const char*>(data), size};
}

/// A copy in its own allocation, so that a read past either end is detected.
inline QByteArray asBytes(const std::uint8_t* data, std::size_t size) {
    return {reinterpret_cast<const char*>(data), static_cast<qsizetype>(size)};
}

/// What the parser guarantees for any input.
inline void require(bool holds) {
    if (!holds)
        std::abort();
}

} // namespace tamsy::fuzz
