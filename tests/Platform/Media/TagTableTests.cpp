#include "Platform/Media/MediaAsset.h"

#include <QFile>
#include <fileref.h>
#include <gtest/gtest.h>
#include <tag.h>

#include <algorithm>
#include <array>
#include <map>

using namespace tamsy;

namespace {

using Texts = std::array<QString, 3>;

const Texts nocturne = {u"夜曲 Nocturne"_qs, u"周杰伦"_qs, u"十一月的萧邦"_qs};
const Texts none;

// The readers that ours is held against. What a row names is known to read the file otherwise.
constexpr unsigned tagLib = 1;
constexpr unsigned mutagen = 2;
constexpr unsigned ffprobe = 4;
constexpr unsigned allLengths = 8; // none of them gives the right one

struct Row {
    const char* file;
    Texts texts;
    unsigned unlike = 0;
    double seconds = 2;
};

struct Answer {
    Texts texts;
    double seconds = 0;
};

Answer ourAnswer(const QByteArray& path) {
    const MediaAsset asset(FileURL::fromPath(path), MediaAsset::Depth::CommonTexts);
    const auto& info = asset.infoDictionary();
    return {{info.value(u"title"_qs), info.value(u"artist"_qs), info.value(u"album"_qs)},
            asset.duration()};
}

Answer tagLibAnswer(const QByteArray& path) {
    const TagLib::FileRef file(path.constData());
    if (file.isNull() || !file.tag())
        return {};
    const auto text = [](const TagLib::String& value) {
        return QString::fromUtf8(value.toCString(true));
    };
    return {{text(file.tag()->title()), text(file.tag()->artist()), text(file.tag()->album())},
            file.audioProperties()->lengthInMilliseconds() / 1000.0};
}

using Answers = std::map<std::pair<QByteArray, unsigned>, Answer>;

Answers recordedAnswers() {
    Answers answers;
    QFile table(QStringLiteral(TAG_FIXTURES "/oracles.tsv"));
    EXPECT_TRUE(table.open(QIODevice::ReadOnly));
    for (const QByteArray& line : table.readAll().split('\n')) {
        const QByteArrayList cells = line.split('\t');
        if (cells.size() == 6)
            answers[{cells[0], cells[1] == "mutagen" ? mutagen : ffprobe}] = {
                {QString::fromUtf8(cells[2]), QString::fromUtf8(cells[3]),
                 QString::fromUtf8(cells[4])},
                cells[5].toDouble()};
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
    {"mp3-v24-several-values.mp3", {nocturne[0], u"A; B"_qs, nocturne[2]}, tagLib | ffprobe},
    {"mp3-v23-utf16-without-mark.mp3", nocturne, tagLib | ffprobe},
    {"mp3-v23-gbk.mp3", nocturne, tagLib | mutagen | ffprobe},
    {"mp3-v23-latin1.mp3",
     {u"Ágætis byrjun – Starálfur"_qs, u"Sigur Rós"_qs, u"Björk’s ÆØÅ"_qs},
     tagLib | mutagen | ffprobe},
    {"mp3-v23-two-tags.mp3", nocturne, tagLib | mutagen},
    {"mp3-v23-size-beyond-frames.mp3", nocturne},
    {"mp3-v1.mp3", {u"A plain title"_qs, u"An artist"_qs, u"An album"_qs}},
    {"mp3-v1-gbk-cut.mp3",
     {u"a夜的第七章里夜的第七章里夜的"_qs, u"周杰伦"_qs, u""_qs},
     tagLib | mutagen | ffprobe},
    {"mp3-v2-and-v1.mp3", {nocturne[0], u"An artist"_qs, u"An album"_qs}, ffprobe},
    {"mp3-half.mp3", nocturne, allLengths, 1.0},
    {"mp3-variable-without-header.mp3", none, 0, 2.04},
    {"mp3-vbri.mp3", none, 0, 2.016},
    {"m4a-named.mp3", nocturne, tagLib},
    {"aac-plain.aac", none},
    {"aac-v2.aac", nocturne, tagLib | mutagen},
    {"aac-v2-and-v1.aac", nocturne, tagLib | mutagen | ffprobe},
    {"m4a-movie-last.m4a", nocturne},
    {"m4a-movie-first.m4a", nocturne},
    {"m4a-fragmented.m4a", nocturne},
    {"m4a-half-fragmented.m4a", nocturne},
    {"m4a-alac-named-keys.m4a", nocturne, tagLib | mutagen},
    {"m4a-user-data.m4a", nocturne, tagLib | mutagen},
    {"m4a-several-values.m4a", {nocturne[0], u"A; B"_qs, nocturne[2]}, tagLib | ffprobe},
    {"flac-plain.flac", {nocturne[0], u"A; B"_qs, nocturne[2]}, tagLib | ffprobe},
    {"flac-leading-id3.flac",
     {u"of the leading tag"_qs, nocturne[1], nocturne[2]},
     tagLib | mutagen | ffprobe},
    {"ogg-vorbis.ogg", nocturne},
    {"ogg-opus.ogg", nocturne},
    {"oga-flac.oga", nocturne},
    {"wav-info.wav", nocturne, tagLib | mutagen},
    {"wav-id3.wav", nocturne},
    {"wav-info-and-id3.wav", nocturne, tagLib | mutagen | ffprobe},
    {"wav-rf64.wav", nocturne, tagLib | mutagen},
    {"wav-info-gbk.wav", nocturne, tagLib | mutagen | ffprobe},
    {"aiff-names.aiff", {nocturne[0], nocturne[1], u""_qs}, tagLib | mutagen | ffprobe},
    {"aif-id3.aif", nocturne},
    {"caf-pcm.caf", nocturne, tagLib | mutagen},
    {"caf-alac.caf", nocturne, tagLib | mutagen},
    {"caf-info-last.caf", nocturne, tagLib | mutagen},
};

TEST(Tags, AreWhatOtherReadersFindWhereTheyAreRight) {
    const Answers recorded = recordedAnswers();
    for (const Row& row : rows) {
        const QByteArray path = QByteArray(TAG_FIXTURES "/").append(row.file);
        const Answer ours = ourAnswer(path);
        EXPECT_EQ(ours.texts, row.texts) << row.file;
        EXPECT_NEAR(ours.seconds, row.seconds, 0.05) << row.file;

        const Answer others[] = {tagLibAnswer(path), recorded.at({row.file, mutagen}),
                                 recorded.at({row.file, ffprobe})};
        unsigned unlike = 0;
        for (unsigned i = 0; i < 3; ++i)
            unlike |= others[i].texts == ours.texts ? 0 : 1U << i;
        if (std::ranges::none_of(others, [&](const Answer& other) {
                return std::abs(other.seconds - ours.seconds) < 0.07;
            }))
            unlike |= allLengths;
        EXPECT_EQ(unlike, row.unlike) << row.file;
    }
}

TEST(Tags, AreTheSameAtEveryDepth) {
    for (const Row& row : rows) {
        const FileURL url = FileURL::fromPath(QByteArray(TAG_FIXTURES "/").append(row.file));
        const MediaAsset full(url, MediaAsset::Depth::Full);
        const MediaAsset items(url, MediaAsset::Depth::Items);
        EXPECT_EQ(full.infoDictionary(), items.infoDictionary()) << row.file;
        const auto& info = full.infoDictionary();
        const Texts texts = {info.value(u"title"_qs), info.value(u"artist"_qs),
                             info.value(u"album"_qs)};
        EXPECT_EQ(texts, row.texts) << row.file;
        EXPECT_NEAR(full.duration(), row.seconds, 0.05) << row.file;
        EXPECT_EQ(items.duration(), 0) << row.file;
    }
}

} // namespace
