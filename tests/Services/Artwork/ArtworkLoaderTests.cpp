#include "Platform/Storage/FileSizeLimit.h"
#include "Platform/Threads/InterfaceThread.h"
#include "Services/Artwork/ArtworkLoader.h"
#include "Services/Artwork/CoverFile.h"
#include "Utils/FNV1a.h"
#include "Utils/FileURL.h"

#include <QDir>
#include <QFile>
#include <QPainter>
#include <QSemaphore>
#include <QTemporaryDir>
#include <QTest>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sys/stat.h>
#include <tuple>

using namespace tamsy;
using Variant = ArtworkLoader::Variant;

namespace {

FileURL fileURL(int number) {
    const QByteArray path = "/music/" + QByteArray::number(number) + ".mp3";
    return FileURL::fromPath(path);
}

QImage filled(QSize size, const QColor& color,
              QImage::Format format = QImage::Format_ARGB32_Premultiplied) {
    QImage image(size, format);
    image.fill(color);
    return image;
}

QImage redAndBlue(QSize size) {
    QImage image = filled(size, Qt::red);
    QPainter(&image).fillRect(size.width() / 2, 0, size.width(), size.height(), Qt::blue);
    return image;
}

bool isNear(const QColor& color, const QColor& other, int tolerance = 12) {
    return std::abs(color.red() - other.red()) <= tolerance &&
           std::abs(color.green() - other.green()) <= tolerance &&
           std::abs(color.blue() - other.blue()) <= tolerance;
}

class ArtworkLoaderTest : public testing::Test {
  protected:
    QTemporaryDir directory;
    QByteArray base = QFile::encodeName(directory.path());
    QImage cover = filled({100, 100}, Qt::green);
    QImage fallback = filled({10, 10}, Qt::gray);
    std::atomic<bool> isReadable = true;
    QSemaphore entered; // a reading has begun
    QSemaphore gate{1000};
    std::unique_ptr<ArtworkLoader> loader = makeLoader();
    std::vector<int> answers; // which requests were answered, in order

    std::unique_ptr<ArtworkLoader> makeLoader() {
        return std::make_unique<ArtworkLoader>(ArtworkLoader::Sources{
            .readMetadata = [this](const FileURL&) -> std::optional<AudioMetadata> {
                entered.release();
                gate.acquire();
                if (!isReadable)
                    return std::nullopt;
                AudioMetadata metadata;
                metadata.artwork = cover;
                return metadata;
            },
            .fallbackCover = [this] { return fallback; },
            .applicationSupportDirectory = base});
    }

    void TearDown() override {
        gate.release(1000);
        loader->end();
        QCoreApplication::processEvents(); // late answers, while what they refer to is there
    }

    ArtworkLoader::Completion answer(int number) {
        return [this, number](const QImage&) { answers.push_back(number); };
    }

    /// Asks and waits for the answer.
    QImage fetched(const FileURL& url, Variant variant) {
        std::optional<QImage> answered;
        loader->load(url, variant, [&](const QImage& image) {
            EXPECT_TRUE(InterfaceThread::isCurrent());
            answered = image;
        });
        EXPECT_TRUE(QTest::qWaitFor([&] { return answered.has_value(); }));
        return answered.value_or(QImage());
    }

    [[nodiscard]] QByteArray path(const FileURL& url, const char* size) const {
        return base + "/Tamsy Music/Thumbnails/" + size + '/' + fnv1a64(url.absoluteString()) +
               ".jpg";
    }

    [[nodiscard]] QStringList filesOnDisk(const char* size) const {
        const QString below = u"/Tamsy Music/Thumbnails/"_qs + QLatin1String(size);
        return QDir(directory.path() + below).entryList(QDir::Files | QDir::Hidden);
    }
};

TEST_F(ArtworkLoaderTest, EveryCoverBecomesASquareThatSurvivesARestart) {
    QImage transparent = redAndBlue({300, 300});
    transparent.fill(Qt::transparent);
    const std::tuple<QImage, QColor, QColor> rows[] = {
        {redAndBlue({1000, 500}), Qt::red, Qt::blue},
        {redAndBlue({30, 700}), Qt::red, Qt::blue},
        {filled({1, 1}, Qt::yellow), Qt::yellow, Qt::yellow},
        {filled({65, 64}, Qt::gray, QImage::Format_Grayscale16), Qt::gray, Qt::gray},
        {redAndBlue({64, 64}).convertToFormat(QImage::Format_Indexed8), Qt::red, Qt::blue},
        {transparent, Qt::white, Qt::white}, // as the file has it
    };
    int number = 0;
    for (const auto& [picture, left, right] : rows) {
        cover = picture;
        const FileURL url = fileURL(++number);
        EXPECT_EQ(fetched(url, Variant::thumb64).size(), QSize(64, 64));
        EXPECT_EQ(fetched(url, Variant::medium512).size(), QSize(512, 512));
        loader = makeLoader();
        for (const Variant variant : {Variant::thumb64, Variant::medium512}) {
            const QImage stored = loader->image(url, variant);
            ASSERT_EQ(stored.width(), variant == Variant::thumb64 ? 64 : 512);
            EXPECT_TRUE(isNear(stored.pixelColor(stored.width() / 4, 9), left)) << number;
            EXPECT_TRUE(isNear(stored.pixelColor(stored.width() * 3 / 4, 9), right)) << number;
        }
    }
    constexpr auto oursAlone =
        QFile::ReadOwner | QFile::WriteOwner | QFile::ReadUser | QFile::WriteUser;
    for (const char* size : {"64", "512"})
        EXPECT_EQ(QFile::permissions(QFile::decodeName(path(fileURL(1), size))), oursAlone);
    EXPECT_EQ(filesOnDisk("64").size(), std::ssize(rows)); // and nothing beside them
}

TEST_F(ArtworkLoaderTest, AHitIsAnsweredWithinTheCall) {
    const QImage first = fetched(fileURL(1), Variant::thumb64);
    const QByteArray key = loader->load(fileURL(1), Variant::thumb64, answer(1));
    EXPECT_EQ(key, "file:///music/1.mp3#64");
    EXPECT_THAT(answers, testing::ElementsAre(1));
    EXPECT_EQ(loader->image(fileURL(1), Variant::thumb64).cacheKey(), first.cacheKey());
    EXPECT_TRUE(loader->image(fileURL(1), Variant::medium512).isNull());
    loader->cancel(fileURL(7), Variant::thumb64); // nothing in flight
    EXPECT_EQ(entered.available(), 1);
}

TEST_F(ArtworkLoaderTest, TheLatestRequestWinsAndWhatHasStartedIsAnswered) {
    gate.acquire(1000);
    for (const int number : {1, 2, 3})
        loader->load(fileURL(number), Variant::thumb64, answer(number));
    ASSERT_TRUE(entered.tryAcquire(3, 5000));
    for (const int number : {40, 41}) // the second cancels the first, which waits
        loader->load(fileURL(4), Variant::thumb64, answer(number));
    loader->load(fileURL(5), Variant::thumb64, answer(5));
    loader->cancel(fileURL(5), Variant::thumb64);
    loader->load(fileURL(1), Variant::thumb64, answer(10)); // the first one runs already
    loader->cancel(fileURL(2), Variant::thumb64);           // so does this
    loader->load(fileURL(6), Variant::thumb64, answer(6), ArtworkLoader::Urgency::PlayingFile);
    EXPECT_FALSE(entered.tryAcquire(1, 50)); // three at once, no more
    gate.release(1000);
    EXPECT_TRUE(QTest::qWaitFor([&] { return answers.size() == 6; }));
    EXPECT_THAT(answers, testing::UnorderedElementsAre(1, 2, 3, 6, 10, 41));
    loader->end();
    EXPECT_EQ(entered.available(), 3); // of 4, 6 and the second reading of 1
}

TEST_F(ArtworkLoaderTest, WithoutACoverTheFallbackIsKept) {
    cover = {};
    fallback = {};
    EXPECT_TRUE(fetched(fileURL(1), Variant::thumb64).isNull());
    EXPECT_TRUE(filesOnDisk("64").isEmpty());
    fallback = filled({10, 10}, Qt::magenta);
    EXPECT_TRUE(isNear(fetched(fileURL(1), Variant::thumb64).pixelColor(1, 1), Qt::magenta));
    cover = filled({10, 10}, Qt::red);
    EXPECT_TRUE(isNear(fetched(fileURL(1), Variant::thumb64).pixelColor(1, 1), Qt::magenta));
    EXPECT_EQ(filesOnDisk("64").size(), 1);
}

TEST_F(ArtworkLoaderTest, AFileThatCanNotBeReadLeavesNoFallback) {
    isReadable = false;
    EXPECT_TRUE(isNear(fetched(fileURL(1), Variant::thumb64).pixelColor(1, 1), Qt::gray));
    EXPECT_TRUE(filesOnDisk("64").isEmpty());
    isReadable = true;
    EXPECT_TRUE(isNear(fetched(fileURL(1), Variant::thumb64).pixelColor(1, 1), Qt::green));
}

TEST_F(ArtworkLoaderTest, ABrokenThumbnailIsReadAnew) {
    const QByteArray good = encoded(filled({3000, 4}, Qt::red), "jpeg");
    const QByteArray contents[] = {"", "no picture", good, good.first(good.size() / 2),
                                   "\xff\xd8garbage\xff\xd9"};
    int number = 0;
    for (const QByteArray& content : contents) {
        const FileURL url = fileURL(++number);
        EXPECT_TRUE(loader->image(url, Variant::thumb64).isNull()); // makes the directory
        QFile file(QFile::decodeName(path(url, "64")));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly) && file.write(content) == content.size());
        file.close();
        EXPECT_TRUE(isNear(fetched(url, Variant::thumb64).pixelColor(1, 1), Qt::green)) << number;
        EXPECT_FALSE(makeLoader()->image(url, Variant::thumb64).isNull()) << number;
    }
    ASSERT_EQ(::mkfifo(path(fileURL(99), "64").constData(), 0600), 0);
    ASSERT_EQ(::mkdir(path(fileURL(98), "64").constData(), 0700), 0);
    for (const int unlucky : {98, 99})
        EXPECT_FALSE(fetched(fileURL(unlucky), Variant::thumb64).isNull());
}

TEST_F(ArtworkLoaderTest, APictureThatCanNotBeStoredIsDeliveredAllTheSame) {
    base = "/dev/null";
    loader = makeLoader();
    EXPECT_FALSE(fetched(fileURL(1), Variant::medium512).isNull());
    EXPECT_FALSE(loader->image(fileURL(1), Variant::medium512).isNull()); // from memory

    base = QFile::encodeName(directory.path());
    loader = makeLoader();
    {
        const FileSizeLimit limit(100); // a disk with room for the file's first bytes
        EXPECT_FALSE(fetched(fileURL(2), Variant::thumb64).isNull());
        loader->end();
    }
    EXPECT_TRUE(filesOnDisk("64").isEmpty());
}

TEST_F(ArtworkLoaderTest, MemoryStaysWithinItsBudget) {
    for (int number = 0; number < 66; ++number)
        EXPECT_FALSE(fetched(fileURL(number), Variant::medium512).isNull());
    ASSERT_TRUE(QDir(directory.path() + u"/Tamsy Music"_qs).removeRecursively());
    for (int number = 0; number < 66; ++number) // two have made room for the others
        EXPECT_EQ(loader->image(fileURL(number), Variant::medium512).isNull(), number < 2);
}

TEST_F(ArtworkLoaderTest, ManyRequestsFromManyThreadsLeaveNothingBehind) {
    std::atomic<int> answered = 0;
    std::vector<std::thread> threads;
    threads.reserve(4);
    for (int thread = 0; thread < 4; ++thread) {
        threads.emplace_back([&] {
            for (int number = 0; number < 200; ++number) {
                loader->load(fileURL(number % 20), Variant::thumb64,
                             [&](const QImage&) { ++answered; });
                if (number % 3 == 0)
                    loader->cancel(fileURL(number % 20), Variant::thumb64);
            }
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_FALSE(fetched(fileURL(100), Variant::thumb64).isNull()); // last in the queue
    loader->end();
    QCoreApplication::processEvents();
    EXPECT_GT(answered, 0);
    EXPECT_LE(filesOnDisk("64").size(), 21);
}

TEST_F(ArtworkLoaderTest, TheProgramsEndLeavesNoFallbackInPlaceOfACover) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    const auto quit = [this] {
        gate.acquire(1000);
        isReadable = false; // a reading that was cut short
        loader->load(fileURL(1), Variant::thumb64, answer(1));
        entered.acquire();
        InterfaceThread::releaseWaiters();
        gate.release(1000);
        loader->end();
        QCoreApplication::processEvents();
        std::exit(filesOnDisk("64").isEmpty() && answers.empty() ? 0 : 1);
    };
    EXPECT_EXIT(quit(), testing::ExitedWithCode(0), "");
}

} // namespace
