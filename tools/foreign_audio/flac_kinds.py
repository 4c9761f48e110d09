"""FLAC files with odd headers, odd frames or none of what comes first."""
import struct

from .files import command, ffmpeg, read, write


def with_total(data, samples):
    data = bytearray(data)
    data[21] = data[21] & 0xF0 | samples >> 32
    data[22:26] = struct.pack(">I", samples & 0xFFFFFFFF)
    return data


def make(source):
    command("flac", "-s", "-f", source)
    sound = read("noise.flac")
    write("no-length.flac", with_total(sound, 0))
    write("short-total.flac", with_total(sound, 7 * 48000))
    write("cut-total.flac", sound[: len(sound) // 2])
    write("long-total.flac", with_total(sound, 3600 * 48000))
    ffmpeg("-i", source, "-c:a", "flac", "-frame_size", "4096", "-f", "flac", "-write_header", "0", "headless.flac")
    command("flac", "-s", "-f", "--lax", "-b", "32768", "-l", "0", "-r", "15,15", "-o", "rice-15.flac", source)
    ffmpeg("-i", source, "-ar", "192000", "-sample_fmt", "s32", "-t", "6", "192000.flac")
    ffmpeg("-i", source, "-af", "pan=7.1|" + "|".join(f"c{n}=c{n % 2}" for n in range(8)), "-t", "6", "8-channels.flac")
