#include "Tags/MediaAsset.h"
#include "Tags/TagText.h"
#include "Utils/FileURL.h"

#include <QFile>
#include <gtest/gtest.h>

#include <array>
#include <map>

using namespace tamsy;

namespace {

using Texts = std::array<QString, 3>;

const Texts nocturne = {u"夜曲 Nocturne"_qs, u"周杰伦"_qs, u"十一月的萧邦"_qs};
const Texts none;

// The readers that ours is compared with. A row names those that are known to differ.
constexpr unsigned mutagen = 1;
constexpr unsigned ffprobe = 2;

struct Row {
    const char* files; // parted by blanks
    Texts texts;
    unsigned unlike = 0;
    double seconds = 2;
};

using Answers = std::map<std::pair<QByteArray, unsigned>, Texts>;

Answers recordedAnswers() {
    Answers answers;
    QFile table(QStringLiteral(TAG_FIXTURES "/oracles.tsv"));
    EXPECT_TRUE(table.open(QIODevice::ReadOnly));
    for (const QByteArray& line : table.readAll().split('\n')) {
        const QByteArrayList cells = line.split('\t');
        if (cells.size() == 6)
            answers[{cells[0], cells[1] == "mutagen" ? mutagen : ffprobe}] = {
                QString::fromUtf8(cells[2]), QString::fromUtf8(cells[3]),
                QString::fromUtf8(cells[4])};
    }
    return answers;
}

const Row rows[] = {
    {"mp3-v24.mp3 mp3-v23.mp3 mp3-v22.mp3 mp3-v24-packed-frames.mp3 mp3-v24-plain-sizes.mp3 "
     "mp3-v24-extended-header.mp3 mp3-v23-size-beyond-frames.mp3 mp3-v23-three-letters.mp3 "
     "riff-wave.mp3 m4a-named.mp3 aac-ape.aac m4a-movie-last.m4a m4a-movie-first.m4a "
     "m4a-fragmented.m4a m4a-film.m4a m4a-half-fragmented.m4a flac-leading-id3.flac "
     "ogg-vorbis.ogg ogg-opus.ogg oga-flac.oga oga-vorbis-middle.oga oga-opus-middle.oga "
     "oga-speex-middle.oga oga-opus-cut.oga oga-speex-cut.oga flac-without-total.flac "
     "wav-id3.wav aif-id3.aif",
     nocturne},
    {"mp3-v23-unsynchronised.mp3 mp3-v23-compressed.mp3 mp3-v23-utf16-without-mark.mp3", nocturne,
     ffprobe},
    {"mp3-v24-several-values.mp3 m4a-several-values.m4a flac-plain.flac",
     {nocturne[0], u"A; B"_qs, nocturne[2]},
     ffprobe},
    {"mp3-v23-gbk.mp3 mp3-v23-plain-size.mp3 mp3-v23-damaged-frames.mp3 mp3-ape.mp3 "
     "riff-rmp3.mp3 aac-v2-and-v1.aac wav-info-and-id3.wav wav-info-gbk.wav",
     nocturne, mutagen | ffprobe},
    {"mp3-v23-latin1.mp3",
     {u"Ágætis byrjun – Starálfur"_qs, u"Sigur Rós"_qs, u"Björk’s ÆØÅ"_qs},
     mutagen | ffprobe},
    {"mp3-v23-two-tags.mp3 aac-v2.aac m4a-alac-named-keys.m4a m4a-user-data.m4a wav-info.wav "
     "wav-rf64.wav wav-adpcm_ms.wav wav-adpcm_ms-wrong-fact.wav wav-adpcm_ima_wav.wav "
     "wav-adpcm_ima_wav-wrong-fact.wav caf-pcm.caf caf-alac.caf caf-info-last.caf",
     nocturne, mutagen},
    {"mp3-v1.mp3", {u"A plain title"_qs, u"An artist"_qs, u"An album"_qs}},
    {"mp3-v1-gbk-cut.mp3",
     {u"a夜的第七章里夜的第七章里夜的"_qs, u"周杰伦"_qs, u""_qs},
     mutagen | ffprobe},
    {"mp3-v2-and-v1.mp3", {nocturne[0], u"An artist"_qs, u"An album"_qs}, ffprobe},
    {"mp3-ape-and-v1.mp3", {nocturne[0], nocturne[1], u"An album"_qs}, mutagen | ffprobe},
    {"mp3-half.mp3", nocturne, 0, 1.0},
    {"mp3-variable-without-header.mp3", none, 0, 2.04},
    {"mp3-vbri.mp3", none, 0, 2.016},
    {"aac-plain.aac", none},
    {"oga-flac-middle.oga", nocturne, 0, 2.12},
    {"oga-vorbis-cut.oga", nocturne, 0, 1.91},
    {"oga-flac-cut.oga", nocturne, 0, 1.92},
    {"aiff-names.aiff", {nocturne[0], nocturne[1], u""_qs}, mutagen | ffprobe},
};

TEST(Tags, AreWhatOtherReadersFindWhereTheyAreRight) {
    const Answers recorded = recordedAnswers();
    for (const Row& row : rows) {
        for (const QByteArray& file : QByteArray(row.files).split(' ')) {
            SCOPED_TRACE(file.constData());
            const QByteArray path = QByteArray(TAG_FIXTURES "/").append(file);
            const MediaAsset asset(FileURL::fromPath(path), MediaAsset::Depth::CommonTexts);
            const auto& info = asset.infoDictionary();
            const Texts ours = {info.value(u"title"_qs), info.value(u"artist"_qs),
                                info.value(u"album"_qs)};
            EXPECT_EQ(ours, row.texts);
            EXPECT_NEAR(asset.duration(), row.seconds, 0.05);

            unsigned unlike = 0;
            for (const unsigned other : {mutagen, ffprobe})
                unlike |= recorded.at({file, other}) == ours ? 0 : other;
            EXPECT_EQ(unlike, row.unlike);
        }
    }
}

TEST(Tags, Utf16WithoutAMarkTakesTheLikelierOrder) {
    EXPECT_EQ(media::decodeUtf16(QByteArray("\x1C\x59\xF2\x66", 4)), u"夜曲");
    EXPECT_EQ(media::decodeUtf16(QByteArray("\x59\x1C\x66\xF2", 4)), u"夜曲");
    EXPECT_EQ(media::decodeUtf16(QByteArray("\0A\0b", 4)), u"Ab");
    EXPECT_EQ(media::decodeUtf16(QByteArray("A\0b\0!", 5)), u"Ab");
    EXPECT_EQ(media::decodeUtf16(QByteArray("\xFE\xFF\0A", 4)), u"A");
}

} // namespace
