"""Codecs and tags that are rare in their containers, but legal."""
import struct

from .files import ffmpeg, read, write


def wave_kinds(source):
    for name, options in {
        "adpcm-ms.wav": ["-c:a", "adpcm_ms"],
        "adpcm-ima.wav": ["-c:a", "adpcm_ima_wav"],
        "gsm.wav": ["-ar", "8000", "-ac", "1", "-c:a", "libgsm_ms"],
        "alaw.wav": ["-c:a", "pcm_alaw"],
        "float64.wav": ["-c:a", "pcm_f64le", "-ar", "11025"],
        "8-bit.wav": ["-c:a", "pcm_u8", "-ar", "8000", "-ac", "1"],
        "24-bit.wav": ["-c:a", "pcm_s24le", "-ar", "96000"],
    }.items():
        ffmpeg("-i", source, *options, name)
    data = read(source)
    start = data.index(b"fmt ")
    sizes = struct.pack("<QQQI", len(data) + 28, len(data), len(data) // 4, 0)
    ds64 = b"ds64" + struct.pack("<I", len(sizes)) + sizes
    write("rf64-plain-size.wav", b"RF64" + data[4:12] + ds64 + data[start:])


def tags_in_front():
    tag = b"ID3\4\0\0\0\0\x10\0" + bytes(0x800)
    for extension in ("flac", "wav", "ogg"):
        write(f"tag-in-front.{extension}", tag + read(f"noise.{extension}"))


def second_engine_kinds(source):
    # Without noise substitution, which sounds different each time it is decoded.
    for name, options in {
        "latm.aac": ["-c:a", "aac", "-aac_pns", "0", "-f", "latm"],
        "variable.aac": ["-c:a", "aac", "-aac_pns", "0", "-q:a", "1", "-f", "adts"],
        "aac.m4a": ["-c:a", "aac", "-aac_pns", "0"],
        "alac.m4a": ["-c:a", "alac"],
        "opus.m4a": ["-c:a", "libopus", "-strict", "-2", "-f", "mp4"],
        "fragments.m4a": ["-c:a", "aac", "-aac_pns", "0", "-movflags", "frag_keyframe+empty_moov", "-frag_duration", "500000"],
        "ima4.caf": ["-c:a", "adpcm_ima_qt"],
        "alac.caf": ["-c:a", "alac"],
        "pcm.caf": ["-c:a", "pcm_s24be"],
        "pcm.aiff": ["-c:a", "pcm_s16be", "-ar", "44100"],
        "ima4.aiff": ["-c:a", "adpcm_ima_qt", "-f", "aiff"],
    }.items():
        ffmpeg("-i", source, *options, name)
    for name in ("aac.m4a", "alac.m4a"):
        ffmpeg("-ss", "3.3", "-i", name, "-c", "copy", f"edited-{name}")


def make(source):
    wave_kinds(source)
    tags_in_front()
    second_engine_kinds(source)
