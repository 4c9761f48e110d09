"""MP3 files between the tags and junk that programs and transfers have left around them."""
import struct

from .files import command, ffmpeg, junk, read, write


def ape_tag(size):
    item = struct.pack("<II", size, 2) + b"Cover Art (Front)\0" + junk(size)
    ends = [
        struct.pack("<8sIIII8x", b"APETAGEX", 2000, len(item) + 32, 1, flags)
        for flags in (0xA0000000, 0x80000000)
    ]
    return ends[0] + item + ends[1]


def id3v1_tag():
    return b"TAG" + b"A title".ljust(125, b"\0")


def lyrics3_tag():
    fields = b"LYRICSBEGIN" + b"IND00002" + b"00"
    return fields + b"%06d" % len(fields) + b"LYRICS200"


def id3v2_tag_with_plain_size(size):
    """As some programs wrote it: the size isn't in seven bits a byte."""
    frame = b"APIC" + struct.pack(">IH", size, 0) + b"\0image/png\0\3\0" + junk(size - 13)
    return b"ID3\3\0\0" + struct.pack(">I", len(frame)) + frame


def frames(data):
    """Of MPEG 1 layer III at 44.1 kHz, as far as they follow one another."""
    kilobits = (0, 32, 40, 48, 56, 64, 80, 96, 112, 128, 160, 192, 224, 256, 320)
    at = data.index(b"\xff\xfb")
    while at + 4 <= len(data) and data[at] == 0xFF:
        size = 144000 * kilobits[data[at + 2] >> 4] // 44100 + (data[at + 2] >> 1 & 1)
        yield data[at : at + size]
        at += size


def make(source):
    ffmpeg("-i", source, "-ar", "44100", "-b:a", "192k", "noise.mp3")
    ffmpeg("-i", source, "-ar", "44100", "44100.part.wav")
    command("lame", "--quiet", "-t", "-V", "4", "44100.part.wav", "no-header.mp3")
    command("lame", "--quiet", "-V", "2", "44100.part.wav", "variable.mp3")
    command("lame", "--quiet", "-t", "--freeformat", "-b", "400", "44100.part.wav", "free-format.mp3")
    ffmpeg("-i", source, "-ar", "22050", "-ac", "1", "-b:a", "48k", "22050.mp3")
    ffmpeg("-i", source, "-ar", "8000", "-ac", "1", "-b:a", "16k", "8000.mp3")
    ffmpeg("-i", source, "-c:a", "mp2", "-f", "mp2", "layer-2.mp3")
    sound = read("noise.mp3")
    bare = read("no-header.mp3")
    write("cut-header.mp3", read("variable.mp3")[: len(read("variable.mp3")) // 2])
    write("large-ape.mp3", sound + ape_tag(9_000_000) + lyrics3_tag() + id3v1_tag())
    write("plain-size.mp3", id3v2_tag_with_plain_size(200_000) + sound)
    write("junk-in-front.mp3", junk(300_000) + bare)
    write("joined.mp3", sound + id3v2_tag_with_plain_size(9_000_000) + sound)
    few = b"".join(list(frames(bare))[20:26])
    write("few-frames.mp3", few + id3v1_tag())
    write("few-frames-ape.mp3", few + ape_tag(20) + id3v1_tag())
    ffmpeg("-i", "noise.mp3", "-c", "copy", "mp3.wav")
    write("riff.mp3", read("mp3.wav"))
