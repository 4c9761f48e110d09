#include "ViewModels/TrackNavigation.h"

#include <gtest/gtest.h>

#include <limits>
#include <set>
#include <tuple>

using namespace tamsy;
using namespace tamsy::navigation;

namespace {

FileURL url(char name) {
    return FileURL::fromPath(QByteArray("/").append(name));
}

TrackList tracks(const char* names) {
    TrackList list;
    for (const char name : QByteArray(names))
        list.append({QUuid::createUuid(), url(name), {}, {}, {}, 0, {}});
    return list;
}

AudioFolder folder(const char* names) {
    return {QUuid::createUuid(), FileURL::fromPath("/"), std::nullopt, tracks(names), {}};
}

TEST(TrackEnd, IsSeenFromPositionAndDurationWhilePlaying) {
    const std::tuple<double, double, bool, bool> rows[] = {
        {9.0, 9.15, true, false}, // 0.1500000000000003 in binary
        {0.0, 0.15, true, true},
        {0.0, 0.1500001, true, false},
        {12, 10, true, true},
        {9.9, 10, false, false},
        {9.9, 0, true, false},
        {9.9, -1, true, false},
        {0, std::numeric_limits<double>::quiet_NaN(), true, false},
    };
    for (const auto& [time, duration, playing, ended] : rows)
        EXPECT_EQ(trackHasEnded(time, duration, playing), ended) << time << ' ' << duration;
}

TEST(StepInList, WrapsRoundAndFindsItsWayIn) {
    const std::tuple<const char*, int, char, char> rows[] = {
        // the list, the step, the current track or '-', and the next one
        {"abc", 1, 'a', 'b'},  {"abc", 1, 'c', 'a'}, {"abc", -1, 'a', 'c'}, {"abc", 1, 'x', 'a'},
        {"abc", -1, 'x', 'c'}, {"abc", 1, '-', 'a'}, {"abc", -1, '-', 'c'}, {"a", 1, 'a', 'a'},
        {"abac", 1, 'a', 'b'}, // the first occurrence counts
    };
    for (const auto& [names, by, current, expected] : rows) {
        const TrackList list = tracks(names);
        const auto step = stepInList(list, current == '-' ? FileURL() : url(current), by);
        ASSERT_TRUE(step);
        EXPECT_EQ(list.at(step->to).url, url(expected)) << names << current << by;
    }
    EXPECT_FALSE(stepInList({}, url('a'), 1));
}

TEST(Shuffle, DrawsFromTheCurrentFileFolderFirst) {
    const QList<AudioFolder> folders{folder("ab"), folder("bcd"), folder("")};
    const auto all = [&] { return tracks("abbcd"); };
    EXPECT_EQ(shufflePool(folders, nullptr, all, url('b')).size(), 2);
    EXPECT_EQ(shufflePool(folders, &folders[0], all, url('d')).size(), 3);
    EXPECT_EQ(shufflePool(folders, &folders[1], all, url('x')).size(), 3);
    EXPECT_EQ(shufflePool(folders, &folders[2], all, {}).size(), 5);
    EXPECT_EQ(shufflePool(folders, nullptr, all, {}).size(), 5);
}

TEST(Shuffle, PicksAnyOtherTrackWithEqualChance) {
    std::set<QByteArray> picked;
    for (qsizetype index = 0; index < 3; ++index) {
        const auto pick = randomTrack(tracks("abcd"), url('b'), [&](qsizetype bound) {
            EXPECT_EQ(bound, 3);
            return index;
        });
        picked.insert(pick->path());
    }
    EXPECT_EQ(picked, (std::set<QByteArray>{"/a", "/c", "/d"}));
    const auto never = [](qsizetype) -> qsizetype { return 0; };
    EXPECT_EQ(randomTrack(tracks("a"), url('a'), never), url('a'));
    EXPECT_EQ(randomTrack(tracks("aa"), url('a'), never), url('a'));
    EXPECT_EQ(randomTrack(tracks("ab"), {}, never), url('a'));
    EXPECT_FALSE(randomTrack({}, url('a'), never));
}

} // namespace
