#include "HostileFiles.h"
#include "ProcessorTime.h"
#include "Tags/MediaAsset.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <sys/stat.h>

using namespace tamsy;
using namespace std::string_literals;

namespace {

// In processor time, since the machine may be busy. The limit is to find endless readers.
constexpr double secondsToScan = 0.3;
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr double secondsToReadAll = 8;
#else
constexpr double secondsToReadAll = 2;
#endif

// The limit for the texts of a file, in UTF-16 units.
constexpr qsizetype lengthToScan = qsizetype{256} * 1024;
constexpr qsizetype lengthToReadAll = qsizetype{8} * 1024 * 1024;

qsizetype lengthOfTexts(const MediaAsset& asset) {
    qsizetype length = 0;
    for (const MediaItem& item : asset.metadata(MetadataFormat::ID3))
        length += item.text.value_or(QString()).size();
    return length;
}

/// Reads everything in a file and returns its title.
QString readAll(const FileURL& url) {
    const double start = processorSeconds();
    const MediaAsset scanned(url, MediaAsset::Depth::CommonTexts);
    EXPECT_LT(processorSeconds() - start, secondsToScan);
    EXPECT_LE(lengthOfTexts(scanned), lengthToScan);
    const MediaAsset asset(url, MediaAsset::Depth::Full);
    EXPECT_LE(lengthOfTexts(asset), lengthToReadAll);
    for (const MediaItem& item : asset.commonMetadata())
        (void)item.data();
    using enum MetadataFormat;
    for (const auto format : {ID3, ITunes, QuickTime})
        for (const MediaItem& item : asset.metadata(format))
            (void)item.data();
    EXPECT_LT(processorSeconds() - start, secondsToReadAll);
    return asset.infoDictionary().value(u"title"_qs);
}

struct Fault {
    const char* name;
    std::string bytes;
    QString title = {}; ///< what can still be read
};

TEST(DamagedFiles, GiveWhatTheFaultLeaves) {
    const std::string title = "TIT2\0\0\0\3\0\0\0ab"s;
    const std::string film = "\0\0\0\x10"
                             "ftypM4A \0\0\0\0"s;
    const std::string name = "\0\0\0\x1A\xA9nam\0\0\0\x12"
                             "data\0\0\0\1\0\0\0\0ab"s;
    const std::string longList = "\0\0\1\0moov\0\0\1\0udta\0\0\1\0meta\0\0\0\0\0\0\1\0ilst"s;
    const std::string page = "OggS\0\2\0\0\0\0\0\0\0\0\1\0\0\0\0\0\0\0\0\0\0\0"s;
    const Fault faults[] = {
        {"empty", {}},
        {"one byte", "I"},
        {"tag longer than the file", "ID3\3\0\0\x7F\x7F\x7F\x7F"s + title, u"ab"_qs},
        {"frame longer than its tag", "ID3\3\0\0\0\0\0\x20"s + title + "TPE1\0\1\0\0\0\0"s,
         u"ab"_qs},
        {"frame of no bytes", "ID3\3\0\0\0\0\0\x17TIT2\0\0\0\0\0\0"s + title, u"ab"_qs},
        {"extended header longer than its tag", "ID3\3\0\x40\0\0\0\x20\x7F\xFF\xFF\xFF"s + title,
         u"ab"_qs},
        {"compressed frame that isn't", "ID3\3\0\0\0\0\0\x20TIT2\0\0\0\6\0\x80\0\0\0\2xx"s},
        {"odd UTF-16",
         "ID3\3\0\0\0\0\0\x11TIT2\0\0\0\6\0\0\1\xFF\xFE"
         "a\0b"s,
         u"a"_qs},
        {"picture without an end",
         "ID3\3\0\0\0\0\0\x20"
         "APIC\0\0\0\6\0\0\0image"s +
             title,
         u"ab"_qs},
        {"atom of its own size", film + "\0\0\0\0moov\0\0\0\0udta\0\0\0\0udta"s},
        {"atom shorter than its header", film + "\0\0\0\4moov"s},
        {"atom of 64 bits that wraps", film + "\0\0\0\1moov\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xF0"s},
        {"atoms longer than the file", film + longList + name, u"ab"_qs},
        {"movie header cut off", film + "\0\0\0\x0Cmoov\0\0\0\x0Cmvhd\1\0\0\0"s},
        {"block longer than the file", "fLaC\4\xFF\xFF\xFF\0\0\0\0\1\0\0\0\x8\0\0\0TITLE=ab"s},
        {"fewer comments than counted", "fLaC\x84\0\0\x14\0\0\0\0\x9\0\0\0\x8\0\0\0TITLE=ab"s,
         u"ab"_qs},
        {"vendor longer than its block",
         "fLaC\x84\0\0\x14\xFF\xFF\xFF\xFF\1\0\0\0\x8\0\0\0TITLE=ab"s},
        {"page without its body", page + "\1\x1E\1vorbis"s},
        {"stream of one page", page + "\1\7\1vorbis"s},
        {"chunk longer than the file", "RIFF\0\0\0\0WAVELIST\xFF\xFF\xFF\xFFINFOINAM\3\0\0\0ab\0"s,
         u"ab"_qs},
        {"sound without a format", "RIFF\0\0\0\0WAVEdata\4\0\0\0abcd"s},
        {"rate of nothing",
         "FORM\0\0\0\0AIFFCOMM\0\0\0\x12\0\1\0\0\0\x09\0\x10\0\0\0\0\0\0\0\0\0\0"s},
        {"text without an end", "caff\0\1\0\0info\0\0\0\0\0\0\0\x0F\0\0\0\1title\0ab"s},
    };
    for (const Fault& fault : faults) {
        SCOPED_TRACE(fault.name);
        MemoryFile file;
        file.append(fault.bytes);
        EXPECT_EQ(readAll(file.url()), fault.title);
    }
}

TEST(DamagedFiles, NoteNoLengthThatTheFileCannotHave) {
    // 2^36 - 1 samples in 42 bytes; four billion frames in one.
    const std::string flac = "fLaC\x80\0\0\x22"s + std::string(10, '\0') +
                             "\x0A\xC4\x42\xFF\xFF\xFF\xFF\xFF"s + std::string(16, '\0');
    std::string mp3 = "\xFF\xFB\x90\xC4"s + std::string(413, '\0');
    mp3 += mp3;
    mp3.replace(21, 12, "Xing\0\0\0\1\xFF\xFF\xFF\xFF"s);
    for (const auto& [bytes, seconds] :
         {std::pair(flac, 0.0), std::pair(mp3, 2 * 1152 / 44'100.0)}) {
        MemoryFile file;
        file.append(bytes);
        EXPECT_NEAR(MediaAsset(file.url(), MediaAsset::Depth::CommonTexts).duration(), seconds,
                    1e-9);
    }
}

TEST(DamagedFiles, WithoutEndAreLeftEarly) {
    for (const HostileFile& hostile : hostileFiles()) {
        SCOPED_TRACE(hostile.name);
        MemoryFile file;
        hostile.writeTo(file);
        readAll(file.url());
    }
    MemoryFile zeros;
    zeros.resize(off_t{1} << 32);
    readAll(zeros.url());
}

TEST(DamagedFiles, ThatAreNoFilesGiveNothing) {
    const QTemporaryDir directory;
    const QByteArray fifo = directory.path().toLocal8Bit() + "/fifo.mp3";
    ASSERT_EQ(::mkfifo(fifo.constData(), 0600), 0);
    for (const QByteArray& path :
         {fifo, directory.path().toLocal8Bit(), QByteArray("/no/such.mp3")})
        EXPECT_EQ(readAll(FileURL::fromPath(path)), QString());
}

/// Changes a few bytes, truncates the file, or writes an extreme value over a possible length.
void mutate(QByteArray& bytes, std::mt19937& random) {
    const auto below = [&](qsizetype limit) {
        return std::uniform_int_distribution<qsizetype>(0,
                                                        std::max<qsizetype>(limit - 1, 0))(random);
    };
    const QByteArray extremes[] = {
        QByteArray(4, '\xFF'),     QByteArray(4, '\0'),       QByteArray("\x7F\xFF\xFF\xFF", 4),
        QByteArray("\0\0\0\1", 4), QByteArray("\1\0\0\0", 4), QByteArray(8, '\xFF')};
    // Readers mostly read the two ends.
    const qsizetype reach = below(4) == 0 ? bytes.size() : std::min<qsizetype>(bytes.size(), 600);
    const qsizetype place = below(5) == 0 ? bytes.size() - 1 - below(reach) : below(reach);
    switch (below(4)) {
    case 0:
        return bytes.truncate(place);
    case 1:
        bytes.replace(place, 4, extremes[below(std::size(extremes))]);
        return;
    case 2:
        bytes.insert(place, bytes.sliced(place, std::min<qsizetype>(40, bytes.size() - place)));
        return;
    default:
        for (int i = 0; i < 4; ++i)
            bytes[below(bytes.size())] = static_cast<char>(random());
        bytes[place] = static_cast<char>(random());
    }
}

TEST(DamagedFiles, SurviveMutationsOfEveryKindOfFile) {
    const int asked = qEnvironmentVariableIntValue("TAMSY_MUTATIONS"); // for a long run by hand
    const int mutations = asked > 0 ? asked : 100;
    std::mt19937 random(20260101);
    for (const QString& name :
         QDir(QStringLiteral(TAG_FIXTURES)).entryList({u"*-*.*"_qs}, QDir::Files)) {
        SCOPED_TRACE(name.toStdString());
        QFile fixture(QStringLiteral(TAG_FIXTURES "/") + name);
        ASSERT_TRUE(fixture.open(QIODevice::ReadOnly));
        const QByteArray original = fixture.readAll();
        for (int i = 0; i < mutations; ++i) {
            QByteArray bytes = original;
            for (auto changes = 1 + random() % 3; changes > 0 && bytes.size() > 1; --changes)
                mutate(bytes, random);
            MemoryFile file;
            file.append({bytes.constData(), static_cast<std::size_t>(bytes.size())});
            readAll(file.url());
        }
    }
}

} // namespace
