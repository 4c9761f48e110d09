#include "Platform/Storage/Child.h"
#include "Platform/Storage/TemporaryFolder.h"

using namespace tamsy;

namespace {

const QString run = u"run"_qs;

TEST(SingleInstance, LetsOneProgramRunAndPassesTheWishOfTheSecond) {
    const TemporaryFolder folder;
    Child first(run, folder.path("a"));
    ASSERT_TRUE(first.says("first\n"));
    Child elsewhere(run, folder.path("b"));
    EXPECT_TRUE(elsewhere.says("first\n")) << "another configuration runs beside";

    const QString runtime = u"XDG_RUNTIME_DIR"_qs;
    Child second(
        run, folder.path("a"),
        {{runtime, QFile::decodeName(folder.path())}, {u"XDG_ACTIVATION_TOKEN"_qs, u"token 1"_qs}});
    EXPECT_TRUE(second.says("second\n")) << "another session's runtime directory changes nothing";
    EXPECT_TRUE(first.says("first\nasked token 1\n"));
    Child third(run, folder.path("a"), {{runtime, {}}});
    EXPECT_TRUE(third.says("second\n"));
    EXPECT_TRUE(first.says("first\nasked token 1\nasked \n"));

    first.kill(); // its lock file and socket remain
    Child fourth(run, folder.path("a"));
    EXPECT_TRUE(fourth.says("first\n"));
    Child fifth(run, folder.path("a"));
    EXPECT_TRUE(fifth.says("second\n"));
}

TEST(SingleInstance, WaitsForOneThatIsAboutToEnd) {
    const TemporaryFolder folder;
    Child first(u"hold"_qs, folder.path("a"));
    ASSERT_TRUE(first.says("first\n"));
    Child second(run, folder.path("a"));
    ASSERT_TRUE(second.process().waitForStarted());
    EXPECT_FALSE(second.process().waitForReadyRead(300));
    first.kill();
    EXPECT_TRUE(second.says("first\n"));
}

} // namespace
