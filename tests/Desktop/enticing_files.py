#!/usr/bin/python3
"""Plays files that try to make the program look elsewhere, under a tracer: enticing_files.py program

Each file refers to a sound, a picture or a list on a network host and in a directory that no user chose. The
program is started on them as their user would: rows with covers, the large window with lyrics, every file
played. It must have made no network socket and opened nothing of that directory. Needs a display with a
window manager, a session bus, a sound server and a profile of its own.
"""
import base64
import os
import re
import struct
import subprocess
import sys
import tempfile
import time
from pathlib import Path

from mutagen import flac, id3, oggvorbis

sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "tools"))
from driven_program import address, click, newest_window, store_library, xdotool  # noqa: E402

HOST = "http://127.0.0.1:9"
SKIPPED = 77  # to the test runner
TITLE_BUTTON, LYRICS_BUTTON, FIRST_ROW = (68, 672), (1164, 764), (500, 138)


def encode(path, *options):
    subprocess.run(["ffmpeg", "-v", "error", "-y", "-f", "lavfi", "-i", "sine=440:d=3", *options, path],
                   check=True, stdin=subprocess.DEVNULL)


def atoms(data):
    while data:
        size, kind = struct.unpack_from(">I4s", data)
        yield kind, data[8:size]
        data = data[size:]


def atom(kind, body):
    return struct.pack(">I4s", len(body) + 8, kind) + body


def with_reference(data, address):
    """An MPEG-4 file whose sound lies at another address, by its data reference."""
    def rebuilt(kind, body):
        if kind in (b"moov", b"trak", b"mdia", b"minf", b"dinf"):
            body = b"".join(rebuilt(*part) for part in atoms(body))
        elif kind == b"dref":
            body = struct.pack(">II", 0, 1) + atom(b"url ", struct.pack(">I", 0) + address.encode() + b"\0")
        return atom(kind, body)
    return b"".join(rebuilt(*part) for part in atoms(data))


def picture_reference(address):
    picture = flac.Picture()
    picture.type, picture.mime, picture.data = 3, "-->", address.encode()
    return picture


def make_files(music, bait):
    encode(bait / "bait.png", "-frames:v", "1", "-filter_complex", "showwavespic=s=64x64")
    encode(bait / "bait.mp3")
    (bait / "bait.lrc").write_text("[00:00.00]bait\n", encoding="utf-8")
    places = [f"{HOST}/x", (bait / "bait.mp3").as_uri(), str(bait / "bait.mp3")]
    lists = {"m3u": "#EXTM3U\n#EXT-X-TARGETDURATION:9\n#EXTINF:9,\n{0}\n{1}\n{2}\n",
             "pls": "[playlist]\nFile1={0}\nFile2={1}\nNumberOfEntries=2\n",
             "concat": "ffconcat version 1.0\nfile {2}\n", "sdp": "v=0\nc=IN IP4 127.0.0.1\nm=audio 9 RTP/AVP 0\n",
             "xspf": "<playlist><track><location>{0}</location></track></playlist>",
             "reference": "[Reference]\nRef1={0}\nRef2={1}\n"}
    for name, text in lists.items():
        for extension in ("mp3", "m4a", "aac"):
            (music / f"{name}.{extension}").write_text(text.format(*places), encoding="utf-8")
    drawing = f'<svg xmlns="http://www.w3.org/2000/svg" xmlns:l="http://www.w3.org/1999/xlink" width="9" ' \
              f'height="9"><image l:href="{bait}/bait.png" width="9" height="9"/></svg>'
    for name, mime, data in (("link", "-->", f"{HOST}/x.png"), ("file", "-->", (bait / "bait.png").as_uri()),
                             ("drawing", "image/svg+xml", drawing)):
        encode(music / f"{name}.mp3")
        tags = id3.ID3()
        tags.add(id3.APIC(mime=mime, type=3, data=data.encode()))
        tags.add(id3.LINK(frameid="APIC", url=f"{HOST}/y.png"))
        tags.add(id3.WOAF(url=f"{HOST}/z"))
        tags.add(id3.USLT(lang="und", desc="", text=str(bait / "bait.lrc")))
        tags.save(music / f"{name}.mp3")
    encode(music / "picture.flac")
    tagged = flac.FLAC(music / "picture.flac")
    tagged.add_picture(picture_reference(str(bait / "bait.png")))
    tagged.save()
    encode(music / "picture.ogg", "-c:a", "libvorbis")
    tagged = oggvorbis.OggVorbis(music / "picture.ogg")
    tagged["metadata_block_picture"] = base64.b64encode(picture_reference(f"{HOST}/x.png").write()).decode()
    tagged["coverarturl"] = f"{HOST}/x.png"
    tagged.save()
    encode(music / "whole.m4a")
    whole = (music / "whole.m4a").read_bytes()
    for number, place in enumerate(places):
        (music / f"reference{number}.m4a").write_bytes(with_reference(whole, place))
    return sorted(path for path in music.iterdir())


def main():
    if subprocess.run(["strace", "-o", os.devnull, "true"], stderr=subprocess.DEVNULL, check=False).returncode:
        print("nothing can be traced on this machine")
        sys.exit(SKIPPED)
    work = Path(tempfile.mkdtemp(dir=os.environ["HOME"]))
    music, bait, trace = work / "music", work / "elsewhere", work / "trace"
    music.mkdir()
    bait.mkdir()
    files = make_files(music, bait)
    store_library(music, files)
    command = ["strace", "-f", "-qq", "-s", "4096", "-e", "trace=network,%file", "-o", trace, sys.argv[1]]
    program = subprocess.Popen(command, stdout=subprocess.PIPE, text=True,
                               env=dict(os.environ, ASAN_OPTIONS="detect_leaks=0"))
    window = newest_window(set())
    click(window, FIRST_ROW)
    click(window, TITLE_BUTTON)
    click(newest_window({window}), LYRICS_BUTTON)
    for file in files:
        subprocess.run(["playerctl", "--player=tamsy-music", "open", address(file)], check=True)
        time.sleep(0.5)
    xdotool("key", "ctrl+q")
    said = program.communicate(timeout=60)[0]
    traced = trace.read_text(encoding="utf-8", errors="replace").splitlines()
    failures = [line for line in traced if re.search(r"socket\(AF_INET|elsewhere|AF_PACKET|127\.0\.0\.1", line)]
    looked_up = said.count("loadLyrics done")
    if looked_up < len(files):
        failures.append(f"only {looked_up} of {len(files)} files were looked up for lyrics")
    failures += [f"{file.name} was never opened" for file in files
                 if not any(f"/{file.name}\"" in line for line in traced)]
    print(*failures, f"{len(files)} files, {len(traced)} calls, {len(failures)} failures", sep="\n")
    sys.exit(bool(failures))


main()
