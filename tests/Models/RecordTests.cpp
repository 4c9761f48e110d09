#include "Models/AudioFolder.h"

#include <gtest/gtest.h>

#include <limits>

using namespace tamsy;

namespace {

Track makeTrack(QUuid id, const char* path, double duration = 0) {
    return {id,       FileURL::fromPath(path), QStringLiteral("t"), {}, {},
            duration, QStringLiteral("mp3")};
}

TEST(Track, FormatsItsDuration) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double infinity = std::numeric_limits<double>::infinity();
    const std::pair<double, const char*> rows[] = {
        {0, "--:--"},    {-1, "--:--"},
        {nan, "--:--"},  {infinity, "--:--"},
        {0.4, "0:00"},   {59.5, "1:00"},
        {59.4, "0:59"},  {3599.5, "60:00"},
        {3725, "62:05"}, {1e300, "153722867280912930:07"},
    };
    for (const auto& [duration, text] : rows)
        EXPECT_EQ(makeTrack({}, "/a", duration).durationFormatted(), QLatin1String(text))
            << duration;
}

TEST(Track, IsItsIdentity) {
    const QUuid id = QUuid::createUuid();
    EXPECT_EQ(makeTrack(id, "/a", 1), makeTrack(id, "/b", 2));
    EXPECT_EQ(qHash(makeTrack(id, "/a")), qHash(makeTrack(id, "/b")));
    EXPECT_FALSE(makeTrack(id, "/a") == makeTrack(QUuid::createUuid(), "/a"));
}

TEST(AudioFolder, ComparesAllFieldsAndTracksByIdentity) {
    const QUuid id = QUuid::createUuid();
    const QUuid track = QUuid::createUuid();
    const QDateTime now = QDateTime::currentDateTimeUtc();
    const AudioFolder a(id, FileURL::fromPath("/m/Jazz"), std::nullopt, {makeTrack(track, "/x")},
                        now);
    AudioFolder b(id, FileURL::fromPath("/m/Jazz"), std::nullopt, {makeTrack(track, "/y")}, now);
    EXPECT_EQ(a.displayName, QStringLiteral("Jazz"));
    EXPECT_EQ(a, b);
    EXPECT_EQ(qHash(a), qHash(b));
    b.displayName = QStringLiteral("Blues");
    EXPECT_FALSE(a == b);
}

TEST(AudioFolder, TakesTenExtensionsInLowerCase) {
    EXPECT_EQ(AudioFolder::supportedExtensions().size(), 10);
    EXPECT_TRUE(AudioFolder::isSupportedExtension("caf"));
    for (const char* other : {"opus", "wma", "MP3", ""})
        EXPECT_FALSE(AudioFolder::isSupportedExtension(other)) << other;
}

} // namespace
