"""Turns a piece and its words into a file as it might lie in somebody's collection."""
import base64
import subprocess
from functools import lru_cache
from pathlib import Path

from mutagen.aiff import AIFF
from mutagen.flac import FLAC, Picture
from mutagen.id3 import APIC, ID3, TALB, TIT2, TPE1, USLT, PictureType
from mutagen.mp4 import MP4, MP4Cover
from mutagen.oggvorbis import OggVorbis
from mutagen.wave import WAVE

from . import composer, covers
from .instruments import RATE

ENCODERS = {
    ".mp3": ["-c:a", "libmp3lame", "-q:a", "3"],
    ".wav": ["-c:a", "pcm_s16le"],
    ".flac": ["-c:a", "flac"],
    ".ogg": ["-c:a", "libvorbis", "-q:a", "5"],
    ".oga": ["-c:a", "libvorbis", "-q:a", "5", "-f", "ogg"],
    ".aac": ["-c:a", "aac", "-b:a", "160k", "-f", "adts"],
    ".aif": ["-c:a", "pcm_s16be"],
    ".aiff": ["-c:a", "pcm_s16be"],
    "aac": ["-c:a", "aac", "-b:a", "192k"],
    "alac": ["-c:a", "alac"],
}


def _ffmpeg(arguments, data):
    command = ["ffmpeg", "-v", "error", "-y", "-nostdin", *arguments]
    return subprocess.run(command, input=data, stdout=subprocess.PIPE, check=True).stdout


@lru_cache(maxsize=None)
def cover_jpeg(name):
    pixels = getattr(covers, name)()
    height, width = pixels.shape[:2]
    return _ffmpeg(["-f", "rawvideo", "-pix_fmt", "rgb24", "-s", f"{width}x{height}", "-i", "pipe:",
                    "-frames:v", "1", "-q:v", "2", "-f", "mjpeg", "pipe:1"], pixels.tobytes())


def _encode(recording, path):
    sound = (composer.play(recording.piece) * 32767).astype("<i2")
    options = ENCODERS[recording.codec or path.suffix]
    # This container's tags can't be added later by the tool that does it for all the others.
    words = ["-metadata", f"title={recording.title}", "-metadata", f"artist={recording.artist}",
             "-metadata", f"album={recording.album}"] if path.suffix == ".caf" else []
    _ffmpeg(["-f", "s16le", "-ar", str(RATE), "-ac", "2", "-i", "pipe:", "-map_metadata", "-1",
             *options, *words, f"file:{path}"], sound.tobytes())


def _fill_id3(tags, recording):
    tags.add(TIT2(encoding=1, text=recording.title))
    tags.add(TPE1(encoding=1, text=recording.artist))
    tags.add(TALB(encoding=3, text=recording.album))
    if recording.embedded_lyrics:
        tags.add(USLT(encoding=1, lang="zho", desc="", text=recording.embedded_lyrics))
    if recording.cover:
        tags.add(APIC(encoding=0, mime="image/jpeg", type=PictureType.COVER_FRONT, desc="",
                      data=cover_jpeg(recording.cover)))


def _tag_with_id3(path, recording):
    tags = ID3()
    _fill_id3(tags, recording)
    tags.save(path)


def _tag_id3_chunk(kind, path, recording):
    file = kind(path)
    file.add_tags()
    _fill_id3(file.tags, recording)
    file.save()


def _fill_vorbis(file, recording):
    file["title"], file["artist"], file["album"] = recording.title, recording.artist, recording.album


def _picture(recording):
    picture = Picture()
    picture.type, picture.mime, picture.data = PictureType.COVER_FRONT, "image/jpeg", cover_jpeg(recording.cover)
    return picture


def _tag_flac(path, recording):
    file = FLAC(path)
    _fill_vorbis(file, recording)
    if recording.cover:
        file.add_picture(_picture(recording))
    file.save()


def _tag_ogg(path, recording):
    file = OggVorbis(path)
    _fill_vorbis(file, recording)
    if recording.cover:
        file["metadata_block_picture"] = base64.b64encode(_picture(recording).write()).decode()
    file.save()


def _tag_mp4(path, recording):
    file = MP4(path)
    file["\xa9nam"], file["\xa9ART"], file["\xa9alb"] = recording.title, recording.artist, recording.album
    if recording.embedded_lyrics:
        file["\xa9lyr"] = recording.embedded_lyrics
    if recording.cover:
        file["covr"] = [MP4Cover(cover_jpeg(recording.cover), MP4Cover.FORMAT_JPEG)]
    file.save()


TAGGERS = {
    ".mp3": _tag_with_id3,
    ".aac": _tag_with_id3,
    ".wav": lambda path, recording: _tag_id3_chunk(WAVE, path, recording),
    ".aif": lambda path, recording: _tag_id3_chunk(AIFF, path, recording),
    ".aiff": lambda path, recording: _tag_id3_chunk(AIFF, path, recording),
    ".flac": _tag_flac,
    ".ogg": _tag_ogg,
    ".oga": _tag_ogg,
    ".m4a": _tag_mp4,
    ".caf": lambda path, recording: None,
}


def make(library, recording):
    """Makes one file of the library, and its lyrics beside it."""
    path = Path(library) / recording.path
    path.parent.mkdir(parents=True, exist_ok=True)
    _encode(recording, path)
    TAGGERS[path.suffix](path, recording)
    if recording.sidecar_lyrics:
        path.with_suffix(".lrc").write_text(recording.sidecar_lyrics, encoding="utf-8")
