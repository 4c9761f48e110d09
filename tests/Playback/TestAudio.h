#pragma once

#include "Utils/FileURL.h"

#include <QTest>
#include <gtest/gtest.h>

namespace tamsy::test {

/// A file that tools/make-test-audio made.
inline FileURL testAudio(QByteArrayView name) {
    return FileURL::fromPath(TAMSY_TEST_AUDIO).appending(name);
}

/// Lets the event loop run until `condition` holds; false if it doesn't within `limit` ms.
template <typename Condition>
[[nodiscard]] bool waitUntil(Condition condition, int limit = 5000) {
    return QTest::qWaitFor(condition, limit);
}

/// The extensions that the library takes in.
inline constexpr const char* extensions[] = {"mp3", "m4a", "aac",  "wav", "aiff",
                                             "aif", "caf", "flac", "ogg", "oga"};

} // namespace tamsy::test
