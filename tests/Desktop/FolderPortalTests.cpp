#include "Desktop/PlayedService.h"
#include "Platform/Desktop/FolderPortal.h"

#include <QDBusArgument>
#include <QDBusObjectPath>
#include <QDir>
#include <QSignalSpy>
#include <QTemporaryDir>

#include <sys/xattr.h>

using namespace tamsy;

namespace {

enum class Manner { Answers, Cancels, Refuses, KeepsSilent, ShowsNothing, EndsWithoutAnswer };

/// A portal that behaves as it is told to.
class Portal : public PlayedService {
  public:
    Manner manner = Manner::Answers;
    QString chosen;
    QVariantMap options;
    QStringList calls;

    bool handleMessage(const QDBusMessage& call, const QDBusConnection& asked) override {
        calls.append(call.member());
        if (call.member() == QLatin1String("Close"))
            return true;
        options = qdbus_cast<QVariantMap>(call.arguments().value(2));
        if (manner == Manner::Refuses)
            return asked.send(call.createErrorReply(QDBusError::UnknownInterface, QString()));
        if (manner == Manner::KeepsSilent)
            return true;
        // An old portal's path, which follows no token.
        const QString handle = portalPath + u"/request/of_its_own"_qs;
        asked.send(call.createReply(QVariant::fromValue(QDBusObjectPath(handle))));
        if (manner == Manner::EndsWithoutAnswer)
            return bus.unregisterService(portalService);
        QDBusMessage response = QDBusMessage::createTargetedSignal(
            call.service(), handle, u"org.freedesktop.portal.Request"_qs, u"Response"_qs);
        response << (manner == Manner::Cancels        ? 1U
                     : manner == Manner::ShowsNothing ? 2U
                                                      : 0U)
                 << QVariantMap{{u"uris"_qs, QStringList{chosen}}};
        QTest::qWait(50); // the user takes a moment
        return asked.send(response);
    }
};

class FolderPortalTest : public testing::TestWithParam<Manner> {
  protected:
    void SetUp() override {
        portal.offer();
        QObject::connect(&panel, &FolderPortal::finished, [this](const auto& folder) {
            ++finished;
            last = folder;
        });
    }
    void open(const QByteArray& startFolder = "/music") {
        panel.open({u"title"_qs, u"accept"_qs, FileURL::fromPath(startFolder), nullptr});
    }

    Portal portal;
    FolderPortal panel;
    QSignalSpy unavailable{&panel, &FolderPortal::unavailable};
    int finished = 0;
    std::optional<FileURL> last;
};

TEST_F(FolderPortalTest, PassesFolderNamesAsBytes) {
    portal.chosen = u"file:///music/%d6%D0/"_qs;
    open("/music/\xD6\xD0");
    ASSERT_TRUE(QTest::qWaitFor([&] { return finished == 1; }));
    EXPECT_EQ(last, FileURL::fromPath("/music/\xD6\xD0"));
    EXPECT_EQ(portal.options.value(u"current_folder"_qs).toByteArray(),
              QByteArray("/music/\xD6\xD0\0", 10));
    EXPECT_EQ(portal.options.value(u"accept_label"_qs), u"accept"_qs);
    EXPECT_EQ(portal.options.value(u"directory"_qs), true);
    EXPECT_EQ(unavailable.count(), 0);
}

TEST_P(FolderPortalTest, WithoutAnAnswerThereIsNoFolder) {
    portal.manner = GetParam();
    portal.chosen = u"file:///music"_qs;
    open();
    const bool isUnavailable =
        portal.manner != Manner::Cancels && portal.manner != Manner::EndsWithoutAnswer;
    ASSERT_TRUE(QTest::qWaitFor([&] { return finished + unavailable.count() > 0; }));
    EXPECT_EQ(unavailable.count(), isUnavailable ? 1 : 0);
    EXPECT_FALSE(last.has_value());
    EXPECT_FALSE(panel.isOpen());
    // A portal that wakes up late must not show a second panel.
    if (portal.manner == Manner::KeepsSilent) {
        EXPECT_TRUE(QTest::qWaitFor([&] { return portal.calls.contains(u"Close"_qs); }));
    }
}

INSTANTIATE_TEST_SUITE_P(Manners, FolderPortalTest,
                         testing::Values(Manner::Cancels, Manner::Refuses, Manner::KeepsSilent,
                                         Manner::ShowsNothing, Manner::EndsWithoutAnswer));

TEST(FolderPortal, LeavesTheDocumentPortalsFolderForTheRealOne) {
    const QTemporaryDir directory;
    const FileURL passedIn = FileURL::fromPath(QFile::encodeName(directory.path()));
    const QByteArray real = QFile::encodeName(QDir::tempPath());
    const auto name = [&](const QByteArray& path) {
        return ::setxattr(passedIn.path().constData(), "user.document-portal.host-path",
                          path.constData(), static_cast<std::size_t>(path.size()), 0) == 0;
    };
    EXPECT_EQ(outsideOfPortal(passedIn), passedIn);
    if (!name(real))
        GTEST_SKIP() << "no extended attributes in " << directory.path().toStdString();
    EXPECT_EQ(outsideOfPortal(passedIn), FileURL::fromPath(real));
    ASSERT_TRUE(name("/not/here"));
    EXPECT_EQ(outsideOfPortal(passedIn), passedIn);
}

} // namespace
