#include "Platform/Storage/NaturalOrder.h"

#include <compare>

namespace tamsy {
namespace {

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

unsigned char foldedByte(char c) {
    return static_cast<unsigned char>(c >= 'A' && c <= 'Z' ? c - 'A' + 'a' : c);
}

/// Removes the digits at the start of `rest` and returns them without leading zeros.
QByteArrayView takeNumber(QByteArrayView& rest) {
    qsizetype end = 0;
    while (end < rest.size() && isDigit(rest[end]))
        ++end;
    QByteArrayView digits = rest.first(end);
    rest = rest.sliced(end);
    while (digits.startsWith('0'))
        digits = digits.sliced(1);
    return digits;
}

std::strong_ordering compareNumbers(QByteArrayView a, QByteArrayView b) {
    if (a.size() != b.size())
        return a.size() <=> b.size();
    return a.compare(b) <=> 0;
}

} // namespace

bool naturallyBefore(QByteArrayView a, QByteArrayView b) {
    QByteArrayView restOfA = a;
    QByteArrayView restOfB = b;
    while (!restOfA.isEmpty() && !restOfB.isEmpty()) {
        auto order = std::strong_ordering::equal;
        if (isDigit(restOfA[0]) && isDigit(restOfB[0])) {
            const QByteArrayView numberOfA = takeNumber(restOfA);
            order = compareNumbers(numberOfA, takeNumber(restOfB));
        } else {
            order = foldedByte(restOfA[0]) <=> foldedByte(restOfB[0]);
            restOfA = restOfA.sliced(1);
            restOfB = restOfB.sliced(1);
        }
        if (order != std::strong_ordering::equal)
            return order == std::strong_ordering::less;
    }
    if (restOfA.isEmpty() != restOfB.isEmpty())
        return restOfA.isEmpty();
    return a.compare(b) < 0;
}

} // namespace tamsy
