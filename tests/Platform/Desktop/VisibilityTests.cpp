#include "Platform/Desktop/Visibility.h"

#include <QGuiApplication>
#include <QPainter>
#include <QProcess>
#include <QRasterWindow>
#include <QTest>
#include <QTimer>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>

using namespace tamsy;
using Occasion = Visibility::Occasion;

namespace {

constexpr auto coverArgument = "--cover-the-screen";

class Window : public QRasterWindow {
  public:
    explicit Window(QRect place) { setGeometry(place); }

    int frames = 0;

  private:
    void paintEvent(QPaintEvent* /*event*/) override {
        ++frames;
        QPainter(this).fillRect(QRect({}, size()), Qt::darkCyan);
    }
};

class VisibilityTest : public testing::Test {
  protected:
    VisibilityTest() {
        QObject::connect(&visibility, &Visibility::changed, &visibility, [this](Occasion occasion) {
            occasions.push_back(occasion);
            answers.push_back(visibility.isAnyWindowVisible());
        });
        window.show();
    }

    static bool waitFor(const std::function<bool()>& condition) {
        return QTest::qWaitFor(condition, 10'000);
    }

    bool becomesVisible(bool visible) {
        return waitFor([&] { return visibility.isAnyWindowVisible() == visible; });
    }

    bool becomesActive(bool active) {
        return waitFor([&] { return visibility.isApplicationActive() == active; });
    }

    /// How often the window is drawn in a number of milliseconds while it requests every frame.
    int framesIn(int milliseconds) {
        QTimer asking;
        QObject::connect(&asking, &QTimer::timeout, &window, [this] { window.update(); });
        QTest::qWait(50); // pending frames
        window.frames = 0;
        asking.start(10);
        QTest::qWait(milliseconds);
        return window.frames;
    }

    /// The events since the last call.
    std::vector<Occasion> taken() { return std::exchange(occasions, {}); }

    static void run(const QString& program, const QStringList& arguments) {
        ASSERT_EQ(QProcess::execute(program, arguments), 0) << program.toStdString();
    }

    Visibility visibility;
    std::vector<Occasion> occasions;
    std::vector<bool> answers; // whether anything could be seen, at each event
    Window window{QRect(200, 200, 300, 200)};
};

TEST_F(VisibilityTest, AMinimisedWindowCanNotBeSeen) {
    ASSERT_TRUE(becomesVisible(true) && becomesActive(true));
    EXPECT_FALSE(visibility.isApplicationHidden());
    EXPECT_THAT(taken(), testing::UnorderedElementsAre(Occasion::WindowDidChangeOcclusionState,
                                                       Occasion::ApplicationDidBecomeActive));
    window.showMinimized();
    ASSERT_TRUE(becomesVisible(false) && becomesActive(false));
    EXPECT_THAT(taken(), testing::IsSupersetOf({Occasion::WindowDidMiniaturize,
                                                Occasion::ApplicationDidResignActive}));
    window.showNormal();
    ASSERT_TRUE(becomesVisible(true));
    EXPECT_THAT(taken(), testing::Contains(Occasion::WindowDidDeminiaturize));
    EXPECT_TRUE(answers.back());
    window.close();
    EXPECT_TRUE(becomesVisible(false));
    EXPECT_FALSE(answers.back());
}

TEST_F(VisibilityTest, AWindowOnAnotherDesktopCanNotBeSeen) {
    ASSERT_TRUE(becomesVisible(true));
    const QString xdotool = u"xdotool"_qs;
    run(xdotool, {u"set_desktop"_qs, u"1"_qs});
    EXPECT_TRUE(becomesVisible(false));
    run(xdotool, {u"set_desktop"_qs, u"0"_qs});
    EXPECT_TRUE(becomesVisible(true));

    // Some window managers only report the desktop and leave the window mapped.
    const auto moveTo = [&](const char* desktop) {
        const QString property = u"_NET_WM_DESKTOP"_qs;
        run(u"xprop"_qs, {u"-id"_qs, QString::number(window.winId()), u"-f"_qs, property, u"32c"_qs,
                          u"-set"_qs, property, QLatin1String(desktop)});
    };
    moveTo("2");
    EXPECT_TRUE(becomesVisible(false));
    EXPECT_TRUE(window.isExposed());
    moveTo("0xFFFFFFFF"); // all desktops
    EXPECT_TRUE(becomesVisible(true));
}

TEST_F(VisibilityTest, AWindowThatAnotherProgramCoversCanNotBeSeen) {
    ASSERT_TRUE(becomesVisible(true) && becomesActive(true));
    taken();
    QProcess program;
    program.start(QCoreApplication::applicationFilePath(), {QString::fromLatin1(coverArgument)});
    EXPECT_TRUE(becomesVisible(false) && becomesActive(false));
    EXPECT_TRUE(window.isExposed()); // so Qt's answer isn't enough
    EXPECT_EQ(framesIn(300), 0);
    EXPECT_THAT(taken(), testing::UnorderedElementsAre(Occasion::WindowDidChangeOcclusionState,
                                                       Occasion::ApplicationDidResignActive));
    program.kill();
    program.waitForFinished();
    EXPECT_TRUE(becomesVisible(true) && becomesActive(true));
    EXPECT_GT(framesIn(300), 0);
}

// With a compositor the server reports every window as uncovered, so the stacking order and
// positions of our own windows decide.
TEST_F(VisibilityTest, AWindowBelowALargerOneOfOursIsNotDrawn) {
    Window larger(QRect(100, 100, 700, 500));
    larger.show();
    const auto isSeen = [&](bool seen) {
        return waitFor([&] { return visibility.canBeSeen(window) == seen; });
    };
    ASSERT_TRUE(waitFor([&] { return visibility.canBeSeen(larger); }));
    const auto bringUp = [](const Window& chosen) {
        run(u"xdotool"_qs, {u"windowactivate"_qs, QString::number(chosen.winId())});
    };
    bringUp(larger);
    ASSERT_TRUE(isSeen(false));
    EXPECT_TRUE(visibility.isAnyWindowVisible());
    EXPECT_EQ(framesIn(300), 0);
    bringUp(window);
    ASSERT_TRUE(isSeen(true));
    EXPECT_GT(framesIn(300), 0);
    bringUp(larger);
    ASSERT_TRUE(isSeen(false));
    larger.setPosition(400, 100);
    EXPECT_TRUE(isSeen(true));
}

int coverTheScreen() {
    Window window(QGuiApplication::primaryScreen()->geometry());
    window.showFullScreen();
    return QGuiApplication::exec();
}

} // namespace

int main(int argc, char** argv) {
    QGuiApplication application(argc, argv);
    QGuiApplication::setQuitOnLastWindowClosed(false);
    if (QGuiApplication::arguments().contains(QLatin1String(coverArgument)))
        return coverTheScreen();
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
