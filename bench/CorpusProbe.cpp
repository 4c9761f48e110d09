// Reads one file as a scan does, as the engine that its extension selects, or with TagLib. Prints
// what it found as "key<TAB>value" lines. bench/corpus runs it over a folder.

#include "Playback/CompositePlaybackEngine.h"
#include "Playback/FFmpeg/MediaBackendModule.h"
#include "Playback/Miniaudio/AudioDecoder.h"
#include "Services/Metadata/MetadataReader.h"
#include "Utils/FileURL.h"

#include <fileref.h>
#include <tag.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <ctime>

using namespace tamsy;

namespace {

/// Decoding stops after this many seconds of sound.
constexpr double decodedLimit = 1200;

void print(const char* key, const QByteArray& value) {
    QByteArray line = value;
    for (const char character : {'\n', '\r', '\t'})
        line.replace(character, ' ');
    std::printf("%s\t%s\n", key, line.constData());
}

void print(const char* key, double value) {
    std::printf("%s\t%.6f\n", key, value);
}

void scan(const FileURL& url) {
    static_cast<void>(MetadataReader().loadWithoutArtwork(url)); // loads what the first file costs
    const std::clock_t start = std::clock();
    const AudioMetadata metadata = MetadataReader().loadWithoutArtwork(url);
    const std::clock_t taken = std::clock() - start;
    print("scan.title", metadata.title.toUtf8());
    print("scan.artist", metadata.artist.toUtf8());
    print("scan.album", metadata.album.toUtf8());
    print("scan.length", metadata.duration);
    print("scan.ms", 1000.0 * static_cast<double>(taken) / CLOCKS_PER_SEC);
}

/// What has been decoded so far.
struct Sound {
    double seconds = 0;
    float peak = 0;

    void add(std::span<const StereoFrame> frames) {
        seconds += static_cast<double>(frames.size()) / mediaSampleRate;
        for (const StereoFrame& frame : frames)
            peak = std::max({peak, std::abs(frame.left), std::abs(frame.right)});
    }

    void print() const {
        ::print("engine.decoded", seconds);
        ::print("engine.peak", peak);
    }
};

void playByFirstEngine(const FileURL& url) {
    AudioDecoder decoder;
    if (decoder.open(url) != MA_SUCCESS)
        return;
    while (decoder.scanMore()) {
    }
    print("engine.length", decoder.length());
    Sound sound;
    std::array<StereoFrame, 4096> block;
    while (sound.seconds < decodedLimit) {
        const auto count = decoder.read(block.data(), block.size());
        sound.add(std::span(block).first(count));
        if (count == 0)
            break;
    }
    sound.print();
}

void playBySecondEngine(const FileURL& url) {
    const std::atomic<bool> isAbandoned = false;
    MediaBackend* backend = loadMediaBackend();
    const auto decoder =
        backend != nullptr ? backend->openFile(url.path().constData(), isAbandoned) : nullptr;
    if (!decoder)
        return;
    while (decoder->scanMore()) {
    }
    print("engine.length", decoder->duration());
    Sound sound;
    for (bool ended = false; !ended && sound.seconds < decodedLimit;) {
        const MediaDecoder::Block block = decoder->decode();
        sound.add(block.frames);
        ended = block.ended;
    }
    sound.print();
}

void readByTagLib(const char* path) {
    const TagLib::FileRef file(path);
    if (file.isNull())
        return;
    if (const TagLib::Tag* tag = file.tag()) {
        print("taglib.title", tag->title().toCString(true));
        print("taglib.artist", tag->artist().toCString(true));
        print("taglib.album", tag->album().toCString(true));
    }
    if (file.audioProperties() != nullptr)
        print("taglib.length", file.audioProperties()->lengthInMilliseconds() / 1000.0);
}

} // namespace

int main(int argumentCount, char** arguments) {
    if (argumentCount != 3)
        return 2;
    const std::string_view reader = arguments[1];
    const FileURL url = FileURL::fromPath(arguments[2]);
    if (reader == "scan")
        scan(url);
    else if (reader == "taglib")
        readByTagLib(arguments[2]);
    else if (CompositePlaybackEngine::isMiniaudioFormat(url.pathExtension().toLower()))
        playByFirstEngine(url);
    else
        playBySecondEngine(url);
}
