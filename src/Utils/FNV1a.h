#pragma once

#include <QByteArray>
#include <QByteArrayView>

#include <cstdint>

namespace tamsy {

/// FNV-1a in 64 bits (Fowler, Noll, Vo), a quick hash for names and signatures. It is no protection
/// against bytes that were made to collide.
class FNV1a {
  public:
    /// Takes in `bytes` behind all that came before.
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

} // namespace tamsy
