#pragma once

#include <QByteArrayView>

namespace tamsy {

/// Whether the file name `a` stands before `b` in a list for people: a run of digits counts by its
/// value, so that "Track 2" comes before "Track 10", and ASCII letters count without their case.
/// Other bytes count as they are, which for UTF-8 is the order of the code points. A total order,
/// the same on every machine: names that differ never rank alike.
[[nodiscard]] bool naturallyBefore(QByteArrayView a, QByteArrayView b);

} // namespace tamsy
