#pragma once

#include "MemoryFile.h"

#include <QByteArray>

#include <random>
#include <string>
#include <vector>

namespace tamsy {

/// A file that keeps its reader busy: a beginning, then one element repeated.
struct HostileFile {
    const char* name;
    std::string head;
    std::string unit;
    std::size_t size = 9'000'000; ///< more than a reader's window serves

    void writeTo(MemoryFile& file) const {
        std::string block;
        while (block.size() < 1'000'000)
            block += unit;
        file.append(head);
        for (std::size_t done = head.size(); done < size; done += block.size())
            file.append(block);
    }
};

/// A compressed ID3v2.3 frame whose payload is `start` plus 15 million bytes.
inline std::string packedFrame(const std::string& name, const std::string& start) {
    QByteArray payload = QByteArray::fromStdString(start);
    payload.resize(15'000'000, 'a');
    // Both Qt and the frame store the payload's size before the compressed bytes.
    const std::string body = qCompress(payload).toStdString();
    const auto size = static_cast<std::uint32_t>(body.size());
    return name + char(size >> 24U) + char(size >> 16U) + char(size >> 8U) + char(size) +
           std::string("\0\x80", 2) + body;
}

inline std::vector<HostileFile> hostileFiles() {
    using namespace std::string_literals;
    constexpr std::size_t framesSize = 34'000'000; // more frames than the reader counts
    const std::string smallestFrame = "\xFF\xE3\x18\xC4"s + std::string(20, '\0');
    const std::string tag = "ID3\3\0\0\x7F\x7F\x7F\x7F"s;
    const std::string filledTag =
        "ID3\3\0\x80\x7F\x7F\x7F\x7FPRIV\0\x30\0\0\0\0"s + std::string(0x300000, 'x');
    const std::string film = "\0\0\0\x10"
                             "ftypM4A \0\0\0\0"s;
    const std::string list = "\2\0\0\0moov\2\0\0\0udta\2\0\0\0meta\0\0\0\0\2\0\0\0ilst"s;
    const std::string page = "OggS\0\2\0\0\0\0\0\0\0\0\1\0\0\0\0\0\0\0\0\0\0\0"s;
    const std::string laterPage = "OggS\0\0\0\0\0\0\0\0\0\0\1\0\0\0\0\0\0\0\0\0\0\0"s;
    const std::string vorbis =
        page + "\1\x1E\1vorbis\0\0\0\0\1\x44\xAC\0\0"s + std::string(14, '\0');
    std::string noise(1'000'000, '\0');
    for (std::mt19937 random(1); char& byte : noise)
        byte = static_cast<char>(random());
    return {
        {"ones.mp3", {}, "\xFF", framesSize},
        {"smallest-frames.mp3", {}, smallestFrame, framesSize},
        {"junk-between-frames.mp3", {}, smallestFrame + "\xFF\xFB\x90\x64"s, framesSize},
        {"noise.mp3", {}, noise},
        {"small-frames.mp3", tag, "TCON\0\0\0\1\0\0\0"s},
        {"long-titles.mp3", tag, "TIT2\0\0\xEA\x60\0\0\0"s + std::string(59'999, '\xC4')},
        {"packed-titles.mp3", tag, packedFrame("TIT2", "\3")},
        {"packed-texts.mp3", tag, packedFrame("TXXX", "\3key\0"s)},
        {"packed-pictures.mp3", tag, packedFrame("APIC", "\0image/png\0\3\0"s)},
        {"far-titles.mp3", filledTag, "TIT2\0\0\x28\0\0\0"s + std::string(0x2800, 'x')},
        {"far-lyrics.mp3", filledTag, "USLT\0\0\0\x0B\0\0\3zho[00:01]"s},
        {"unsynchronised.mp3",
         "ID3\3\0\x80\x7F\x7F\x7F\x7F"
         "APIC\0\x3F\0\0\0\0"s,
         "\xFF\0"s},
        {"atoms.m4a", film, "\0\0\0\10free"s},
        {"list-items.m4a", film + list,
         "\0\0\0\x20\xA9nam\0\0\0\x18"
         "data\0\0\0\1\0\0\0\0abcdefgh"s},
        {"fragments.m4a", film + "\0\0\0\x10moov\0\0\0\10mvex"s, "\0\0\0\x10moof\0\0\0\10traf"s},
        {"blocks.flac", "fLaC", "\1\0\0\0"s},
        {"comments.flac", "fLaC\4\xFF\xFF\xFF\0\0\0\0\xFF\xFF\xFF\xFF"s, "\x8\0\0\0TITLE=ab"s,
         17'000'000},
        {"pages.ogg", vorbis, laterPage + "\1\xFF"s + std::string(255, '\0')},
        {"small-pages.ogg", vorbis, laterPage + "\0"s},
        {"chunks.wav", "RIFF\xFF\xFF\xFF\xFFWAVE"s, "LIST\0\0\0\0"s},
        {"id3-chunks.wav", "RIFF\xFF\xFF\xFF\xFFWAVE"s,
         "id3 \x14\0\0\0"s + tag + "APIC\0\x7A\0\0\0\0"s},
        {"chunks.aiff",
         "FORM\xFF\xFF\xFF\xFF"
         "AIFF"s,
         "NAME\0\0\0\0"s},
        {"chunks.caf", "caff\0\1\0\0"s, "free\0\0\0\0\0\0\0\0"s},
        {"nested-media.m4a", film + "\0\0\0\0moov\0\0\0\0trak"s, "\0\0\0\0mdia"s},
        {"info.caf", "caff\0\1\0\0info\0\0\0\0\1\0\0\0\0\0\0\1"s, "title\0x\0"s, 17'000'000},
    };
}

} // namespace tamsy
