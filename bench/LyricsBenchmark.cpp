// A track's lyrics: parsing, a search that finds nothing, marking the current line.

#include "Services/Lyrics/LyricsParsing.h"
#include "Services/Lyrics/LyricsReader.h"
#include "Services/Lyrics/LyricsSidecar.h"
#include "Utils/FileURL.h"
#include "Views/NowPlaying/LyricsPanelModel.h"

#include <QCoreApplication>
#include <QFile>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QtEndian>
#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <thread>

using namespace tamsy;

namespace {

QString song(int lines) {
    QString text = QStringLiteral("[ti:夜曲]\r\n[ar:周杰伦]\r\n");
    for (int i = 0; i < lines; ++i) {
        text += QStringLiteral("[%1:%2.50]为你弹奏萧邦的夜曲 nocturne for you\r\n")
                    .arg(i / 15 % 100, 2, 10, QChar(u'0'))
                    .arg(i % 15 * 4, 2, 10, QChar(u'0'));
    }
    return text;
}

void parseSong(benchmark::State& state) {
    const QString text = song(500);
    for (auto _ : state)
        benchmark::DoNotOptimize(parseLRCFormat(text));
}

/// Lower bound for a parser of lines.
void splitSong(benchmark::State& state) {
    const QString text = song(500);
    for (auto _ : state)
        benchmark::DoNotOptimize(text.split(QChar(u'\n')));
}

/// A file in its own folder.
class File {
  public:
    File(const char* name, const QByteArray& content)
        : path_(QFile::encodeName(directory_.filePath(QString::fromLatin1(name)))) {
        QFile file(QFile::decodeName(path_));
        if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
            std::abort();
    }
    [[nodiscard]] FileURL url() const { return FileURL::fromPath(path_); }

  private:
    QTemporaryDir directory_;
    QByteArray path_;
};

void readLargestSidecar(benchmark::State& state) {
    const QByteArray text = song(20'000).toUtf8();
    const File file("song.lrc", text.first(text.lastIndexOf('\n', maxSidecarSize) + 1));
    for (auto _ : state)
        benchmark::DoNotOptimize(parseLRCFile(file.url()));
}

QByteArray noise(qsizetype size) {
    QByteArray bytes(size, Qt::Uninitialized);
    std::ranges::generate(bytes, [generator = QRandomGenerator(1)]() mutable {
        return static_cast<char>(generator.generate());
    });
    return bytes;
}

QByteArray bigEndian(qsizetype value) {
    QByteArray bytes(4, Qt::Uninitialized);
    qToBigEndian(static_cast<quint32>(value), bytes.data());
    return bytes;
}

QByteArray frame(const QByteArray& name, const QByteArray& body) {
    return name + bigEndian(body.size()) + QByteArray(2, '\0') + body;
}

void searchInVain(benchmark::State& state, const File& file) {
    for (auto _ : state) {
        if (!LyricsReader().load(file.url()).lines.isEmpty())
            state.SkipWithError("found lyrics where there are none");
    }
}

/// A song of 4 MB with texts and a cover of 300 KB, which is searched too.
void searchTaggedSong(benchmark::State& state) {
    const QByteArray cover = QByteArray("\0image/jpeg\0\3\0", 14) + noise(300'000);
    QByteArray frames = frame("APIC", cover);
    for (const char* name : {"TIT2", "TPE1", "TALB", "TRCK", "TYER", "TCON"})
        frames += frame(name, "\3A text of some length");
    const qsizetype size = frames.size();
    QByteArray syncsafe; // the length as a sync-safe integer
    for (const unsigned shift : {21U, 14U, 7U, 0U})
        syncsafe += static_cast<char>(size >> shift & 0x7F);
    searchInVain(
        state, File("song.mp3", QByteArray("ID3\3\0\0", 6) + syncsafe + frames + noise(4'000'000)));
}

/// Without tags; the whole file has to be searched for the item's name.
void searchWholeMpeg4File(benchmark::State& state) {
    searchInVain(state, File("song.m4a",
                             bigEndian(24) + "ftypM4A " + QByteArray(12, '\0') + noise(8'000'000)));
}

/// The last of 10,000 lines is current, so all are examined.
void markLastLine(benchmark::State& state) {
    QByteArray text;
    for (int line = 0; line < 10'000; ++line)
        text +=
            QString::asprintf("[%02d:%02d.%02d]line\n", line / 600, line / 10 % 60, line % 10 * 10)
                .toUtf8();
    const File file("song.lrc", text);
    LyricsPanelModel panel;
    panel.loadLyrics(file.url().parent().appending("song.mp3"));
    while (panel.rowCount() == 0)
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    for (auto _ : state)
        panel.updateCurrentLyricIndex(1e6);
}

BENCHMARK(splitSong)->Unit(benchmark::kMicrosecond);
BENCHMARK(parseSong)->Unit(benchmark::kMicrosecond);
BENCHMARK(readLargestSidecar)->Unit(benchmark::kMicrosecond);
BENCHMARK(markLastLine)->Unit(benchmark::kMicrosecond);
BENCHMARK(searchTaggedSong)->Unit(benchmark::kMicrosecond)->UseRealTime();
BENCHMARK(searchWholeMpeg4File)->Unit(benchmark::kMicrosecond)->UseRealTime();

} // namespace

/// The search waits for the interface thread, which runs its event loop meanwhile.
int main(int argc, char** argv) {
    QCoreApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    std::thread runner([&application] {
        benchmark::RunSpecifiedBenchmarks();
        QMetaObject::invokeMethod(&application, &QCoreApplication::quit);
    });
    QCoreApplication::exec();
    runner.join();
    return 0;
}
