#include "Platform/Desktop/Visibility.h"
#include "Playback/FakeEngine.h"
#include "ViewModels/PlayerViewModel.h"

#include <QRasterWindow>
#include <QTest>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace tamsy;
using testing::ElementsAre;

namespace {

TEST(UpdateRateTest, TimeIsReportedRarelyAndShownToNobodyWhileNobodyLooks) {
    Visibility visibility;
    auto* engine = new FakeEngine; // the player owns it
    PlayerViewModel player(
        std::unique_ptr<AudioPlaybackEngine>(engine),
        {.visibility = &visibility, .artworkLoader = nullptr, .makeNowPlayingWindow = {}});
    EXPECT_THAT(engine->calls, ElementsAre("interval 1.2"));
    EXPECT_FALSE(player.isUIVisible()); // no window is up yet

    QRasterWindow window;
    window.resize(300, 200);
    window.show();
    const auto becomesVisible = [&](bool visible) {
        return QTest::qWaitFor([&] { return player.isUIVisible() == visible; }, 10'000);
    };
    ASSERT_TRUE(becomesVisible(true));
    EXPECT_EQ(engine->updateInterval, 0.25);
    engine->currentTimeSubject_.send(5);
    EXPECT_TRUE(QTest::qWaitFor([&] { return player.currentTime() == 5; }));

    window.showMinimized();
    ASSERT_TRUE(becomesVisible(false));
    EXPECT_EQ(engine->updateInterval, 1.2);
    engine->currentTimeSubject_.send(9);
    QTest::qWait(20);
    EXPECT_EQ(player.currentTime(), 5);

    window.showNormal();
    ASSERT_TRUE(becomesVisible(true));
    EXPECT_EQ(player.currentTime(), 9); // at once, without another report
    EXPECT_EQ(engine->updateInterval, 0.25);
}

} // namespace
