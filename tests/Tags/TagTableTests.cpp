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
    const char* file;
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
    {"mp3-v24.mp3", nocturne},
    {"mp3-v23.mp3", nocturne},
    {"mp3-v22.mp3", nocturne},
    {"mp3-v23-unsynchronised.mp3", nocturne, ffprobe},
    {"mp3-v24-packed-frames.mp3", nocturne},
    {"mp3-v23-compressed.mp3", nocturne, ffprobe},
    {"mp3-v24-plain-sizes.mp3", nocturne},
    {"mp3-v24-extended-header.mp3", nocturne},
    {"mp3-v24-several-values.mp3", {nocturne[0], u"A; B"_qs, nocturne[2]}, ffprobe},
    {"mp3-v23-utf16-without-mark.mp3", nocturne, ffprobe},
    {"mp3-v23-gbk.mp3", nocturne, mutagen | ffprobe},
    {"mp3-v23-latin1.mp3",
     {u"Ágætis byrjun – Starálfur"_qs, u"Sigur Rós"_qs, u"Björk’s ÆØÅ"_qs},
     mutagen | ffprobe},
    {"mp3-v23-two-tags.mp3", nocturne, mutagen},
    {"mp3-v23-size-beyond-frames.mp3", nocturne},
    {"mp3-v23-plain-size.mp3", nocturne, mutagen | ffprobe},
    {"mp3-v1.mp3", {u"A plain title"_qs, u"An artist"_qs, u"An album"_qs}},
    {"mp3-v1-gbk-cut.mp3",
     {u"a夜的第七章里夜的第七章里夜的"_qs, u"周杰伦"_qs, u""_qs},
     mutagen | ffprobe},
    {"mp3-v2-and-v1.mp3", {nocturne[0], u"An artist"_qs, u"An album"_qs}, ffprobe},
    {"mp3-v23-three-letters.mp3", nocturne},
    {"mp3-v23-damaged-frames.mp3", nocturne, mutagen | ffprobe},
    {"mp3-ape.mp3", nocturne, mutagen | ffprobe},
    {"mp3-ape-and-v1.mp3", {nocturne[0], nocturne[1], u"An album"_qs}, mutagen | ffprobe},
    {"riff-wave.mp3", nocturne},
    {"riff-rmp3.mp3", nocturne, mutagen | ffprobe},
    {"mp3-half.mp3", nocturne, 0, 1.0},
    {"mp3-variable-without-header.mp3", none, 0, 2.04},
    {"mp3-vbri.mp3", none, 0, 2.016},
    {"m4a-named.mp3", nocturne},
    {"aac-plain.aac", none},
    {"aac-v2.aac", nocturne, mutagen},
    {"aac-ape.aac", nocturne},
    {"aac-v2-and-v1.aac", nocturne, mutagen | ffprobe},
    {"m4a-movie-last.m4a", nocturne},
    {"m4a-movie-first.m4a", nocturne},
    {"m4a-fragmented.m4a", nocturne},
    {"m4a-film.m4a", nocturne},
    {"m4a-half-fragmented.m4a", nocturne},
    {"m4a-alac-named-keys.m4a", nocturne, mutagen},
    {"m4a-user-data.m4a", nocturne, mutagen},
    {"m4a-several-values.m4a", {nocturne[0], u"A; B"_qs, nocturne[2]}, ffprobe},
    {"flac-plain.flac", {nocturne[0], u"A; B"_qs, nocturne[2]}, ffprobe},
    {"flac-leading-id3.flac", nocturne},
    {"ogg-vorbis.ogg", nocturne},
    {"ogg-opus.ogg", nocturne},
    {"oga-flac.oga", nocturne},
    {"oga-vorbis-middle.oga", nocturne},
    {"oga-opus-middle.oga", nocturne},
    {"oga-flac-middle.oga", nocturne, 0, 2.12},
    {"oga-speex-middle.oga", nocturne},
    {"oga-vorbis-cut.oga", nocturne, 0, 1.91},
    {"oga-opus-cut.oga", nocturne},
    {"oga-flac-cut.oga", nocturne, 0, 1.92},
    {"oga-speex-cut.oga", nocturne},
    {"flac-without-total.flac", nocturne},
    {"wav-info.wav", nocturne, mutagen},
    {"wav-id3.wav", nocturne},
    {"wav-info-and-id3.wav", nocturne, mutagen | ffprobe},
    {"wav-rf64.wav", nocturne, mutagen},
    {"wav-info-gbk.wav", nocturne, mutagen | ffprobe},
    {"wav-adpcm_ms.wav", nocturne, mutagen},
    {"wav-adpcm_ms-wrong-fact.wav", nocturne, mutagen},
    {"wav-adpcm_ima_wav.wav", nocturne, mutagen},
    {"wav-adpcm_ima_wav-wrong-fact.wav", nocturne, mutagen},
    {"aiff-names.aiff", {nocturne[0], nocturne[1], u""_qs}, mutagen | ffprobe},
    {"aif-id3.aif", nocturne},
    {"caf-pcm.caf", nocturne, mutagen},
    {"caf-alac.caf", nocturne, mutagen},
    {"caf-info-last.caf", nocturne, mutagen},
};

TEST(Tags, AreWhatOtherReadersFindWhereTheyAreRight) {
    const Answers recorded = recordedAnswers();
    for (const Row& row : rows) {
        const QByteArray path = QByteArray(TAG_FIXTURES "/").append(row.file);
        const MediaAsset asset(FileURL::fromPath(path), MediaAsset::Depth::CommonTexts);
        const auto& info = asset.infoDictionary();
        const Texts ours = {info.value(u"title"_qs), info.value(u"artist"_qs),
                            info.value(u"album"_qs)};
        EXPECT_EQ(ours, row.texts) << row.file;
        EXPECT_NEAR(asset.duration(), row.seconds, 0.05) << row.file;

        unsigned unlike = 0;
        for (const unsigned other : {mutagen, ffprobe})
            unlike |= recorded.at({row.file, other}) == ours ? 0 : other;
        EXPECT_EQ(unlike, row.unlike) << row.file;
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
