#pragma once

#include <QByteArray>
#include <QByteArrayView>

#include <cstdint>

namespace tamsy {

/// 64-bit FNV-1a (Fowler, Noll, Vo), a fast hash for names and signatures. It does not resist
/// deliberate collisions.
class FNV1a {
  public:
    /// Continues the hash with `bytes`.
    constexpr void add(QByteArrayView bytes) {
        for (const char byte : bytes) {
            value_ ^= static_cast<unsigned char>(byte);
            value_ *= prime;
        }
    }

    [[nodiscard]] constexpr std::uint64_t value() const { return value_; }

    /// The value as sixteen lower-case hexadecimal digits.
    [[nodiscard]] QByteArray text() const {
        constexpr int hexadecimal = 16;
        return QByteArray::number(quint64(value_), hexadecimal).rightJustified(hexadecimal, '0');
    }

  private:
    static constexpr std::uint64_t prime = 0x100000001b3;

    std::uint64_t value_ = 0xcbf29ce484222325; // the offset basis
};

/// The hash of `bytes` as sixteen lower-case hexadecimal digits.
[[nodiscard]] inline QByteArray fnv1a64(QByteArrayView bytes) {
    FNV1a hash;
    hash.add(bytes);
    return hash.text();
}

} // namespace tamsy
