"""Ogg files as old encoders, stream recorders and broken transfers leave them."""
import struct

from .files import ffmpeg, read, write
from .ogg import Ogg
from .vorbis_setup import SetupHeader


def with_small_pages(source, codec):
    """An Ogg file that tells the position of each packet."""
    return ffmpeg("-i", source, "-c:a", codec, "-f", "ogg", "-page_duration", "1", "pipe:1")


def flac_in_full_pages(source):
    """FLAC in Ogg as older muxers wrote it."""
    packets = list(Ogg.packets(with_small_pages(source, "flac")))
    headers = next(n for n, (packet, _) in enumerate(packets) if packet[:1] == b"\xff")
    write("full-pages.oga", Ogg.full_pages(packets, headers))


def vorbis_with_empty_book(source):
    """Vorbis as its first encoders wrote it; and with such a book where the decoder needs one."""
    packets = list(Ogg.packets(with_small_pages(source, "copy")))
    setup = SetupHeader(packets[2][0])
    for name, start, end in (
        ("empty-book.ogg", setup.at, setup.at),
        ("empty-floor-book.ogg", setup.starts[0], setup.starts[1]),
    ):
        packets[2] = (setup.packet(start, end), 0)
        write(name, Ogg.full_pages(packets, 3))


def later(data, frames):
    """Cut out of a stream that had run for so many frames."""
    for page in Ogg.whole_pages(data):
        granule = struct.unpack_from("<q", page, 6)[0]
        if granule > 0:
            page = page[:6] + struct.pack("<q", granule + frames) + page[14:]
            page = Ogg.with_checksum(page)
        yield page


def with_serial(data, serial):
    for page in Ogg.whole_pages(data):
        yield Ogg.with_checksum(page[:14] + struct.pack("<I", serial) + page[18:])


def with_gaps(pages):
    """Zeros between pages."""
    for number, page in enumerate(pages):
        yield page + (bytes(300) if number % 5 == 4 else b"")


def make(source):
    flac_in_full_pages(source)
    ffmpeg("-i", source, "-c:a", "libvorbis", "noise.ogg")
    ffmpeg("-i", source, "-c:a", "libopus", "-b:a", "192k", "opus.ogg")
    ffmpeg("-i", source, "-c:a", "flac", "-f", "ogg", "flac.oga")
    ffmpeg("-i", source, "-ar", "8000", "-ac", "1", "-c:a", "libvorbis", "low.ogg")
    for rate in (8000, 32000):
        ffmpeg("-i", source, "-ar", str(rate), "-ac", "1", "-c:a", "libspeex", "-f", "ogg", f"speex-{rate}.oga")
    vorbis_with_empty_book("noise.ogg")
    for name in ("noise.ogg", "opus.ogg", "flac.oga"):
        data = read(name)
        write(f"late-{name}", b"".join(later(data, 3600 * 48000)))
        pages = list(Ogg.whole_pages(data))
        write(f"cut-{name}", b"".join(pages[:-1]) + pages[-1][: len(pages[-1]) // 2])
        encoder = {"noise.ogg": "libvorbis", "opus.ogg": "libopus", "flac.oga": "flac"}[name]
        ffmpeg("-ss", "7", "-i", source, "-c:a", encoder, "-f", "ogg", "second.part")
        write(f"chained-{name}", data + b"".join(with_serial(read("second.part"), 99)))
    write("gaps.ogg", b"".join(with_gaps(Ogg.whole_pages(read("noise.ogg")))))
