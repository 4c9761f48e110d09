"""Drives a program on a virtual display from outside: its library, windows and clicks."""
import base64
import json
import os
import subprocess
import sys
import time
import uuid
from pathlib import Path
from urllib.parse import quote


def address(path):
    return "file://" + quote(os.fsencode(path), safe="-._~!$&'()*+,:=@/")


def store_library(music, files):
    """Stores a library with that one folder, already scanned."""
    folder = Path(os.environ["XDG_CONFIG_HOME"]) / "Tamsy Music"
    folder.mkdir(parents=True)
    tracks = [{"id": str(uuid.uuid4()).upper(), "urlString": address(file), "title": file.stem, "artist": "",
               "album": "", "duration": 30, "fileExtension": file.suffix[1:]} for file in files]
    bookmark = f"tamsy-folder 1\n{address(music)}\n\n"
    (folder / "FolderLibraryService.Bookmarks").write_text(json.dumps([
        {"id": str(uuid.uuid4()).upper(), "dateAdded": 0, "tracks": tracks,
         "bookmarkBase64": base64.b64encode(bookmark.encode()).decode()}]), encoding="utf-8")


def xdotool(*arguments):
    return subprocess.run(["xdotool", *map(str, arguments)], check=True, stdout=subprocess.PIPE,
                          text=True).stdout.split()


def newest_window(known):
    """Waits for a window that isn't among the known ones."""
    for _ in range(300):
        found = subprocess.run(["xdotool", "search", "--onlyvisible", "--class", "tamsy-music"],
                               stdout=subprocess.PIPE, text=True, check=False).stdout.split()
        new = set(found) - known
        if new:
            time.sleep(1.5)
            return new.pop()
        time.sleep(0.1)
    sys.exit("the program shows no window")


def click(window, place):
    xdotool("mousemove", "--window", window, *place)
    time.sleep(0.2)
    xdotool("click", 1)
    time.sleep(1.5)
