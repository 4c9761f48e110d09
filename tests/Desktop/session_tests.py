#!/usr/bin/python3 -B
"""The whole program in the session that it finds, used by real clicks and keys: session_tests.py program"""
import os
import signal
import subprocess
import sys
import time
import wave
from pathlib import Path

sys.path.insert(0, str(Path(__file__).parents[2] / "tools"))
from demo_tour.window import RIGHT, Window, key, type_text, wait_for  # noqa: E402
from driven_program import store_library  # noqa: E402

BUTTON = ("push button", "button")
faults = []


def check(good, what):
    print(f"{'ok    ' if good else 'FAILED'} {what}", flush=True)
    if not good:
        faults.append(what)


def make_music():
    folder = Path(os.environ["HOME"]) / "music"
    folder.mkdir()
    for name in ("one", "two", "three"):
        with wave.open(str(folder / f"{name}.wav"), "wb") as file:
            file.setparams((1, 2, 8000, 0, "NONE", ""))
            file.writeframes(bytes(8000 * 2 * 60))
    files = [folder / f"{name}.wav" for name in ("one", "two", "three")]
    store_library(folder, files)


def status():
    return subprocess.run(["playerctl", "--player=tamsy-music", "status"], stdout=subprocess.PIPE,
                          stderr=subprocess.DEVNULL, text=True, check=False).stdout.strip()


def comes_to(wanted):
    return wait_for(lambda: status() == wanted)


def main(command):
    make_music()
    surroundings = os.environ | {"PULSE_SERVER": "unix:/nonexistent", "ALSA_CONFIG_PATH": "/dev/null",
                                 "QT_LINUX_ACCESSIBILITY_ALWAYS_ON": "1", "ASAN_OPTIONS": "detect_leaks=0"}
    if "WAYLAND_DISPLAY" in surroundings:
        del surroundings["DISPLAY"]  # nothing to fall back to
    log = Path(os.environ["HOME"]) / "log"
    program = subprocess.Popen([command], env=surroundings, stdout=subprocess.DEVNULL, stderr=log.open("w"))
    window = Window(program)
    row = lambda name: wait_for(lambda: window.find(name + " ", ("table row",)))  # noqa: E731

    row("one")
    time.sleep(0.5)  # the compositor shows what is there already
    window.click(row("two"), across=0.2)
    check(comes_to("Playing"), "a click on a row plays it")
    time.sleep(1)  # a pause at the very start counts as stopped
    key("space")
    check(comes_to("Paused"), "Space pauses")
    window.click(window.find("搜索音乐"))
    type_text("o e")
    check(wait_for(lambda: len(window.names("table row")) == 0), "the search field takes letters and Space")
    check(status() == "Paused", "what is typed there is no shortcut")
    key("Escape")
    check(wait_for(lambda: len(window.names("table row")) == 3), "Escape empties it")

    window.click(window.find("music", ("list item",)), button=RIGHT)
    check(wait_for(lambda: window.find("重新扫描", ("menu item",))), "a right click opens a folder's menu")
    key("Escape")

    window.click(window.find("two", BUTTON))
    large = Window(program, besides=window)
    check(wait_for(lambda: large.find("歌词", BUTTON)), "a click on the title opens the large window")
    time.sleep(0.5)
    key("space")
    check(comes_to("Playing"), "it has the keyboard")
    key("ctrl+w")
    check(wait_for(lambda: not large.is_up()), "Ctrl+W closes it")

    again = subprocess.run([command], env=surroundings, stdout=subprocess.DEVNULL, timeout=30, check=False)
    check(again.returncode == 0 and program.poll() is None, "a second start leaves it to the first")

    program.send_signal(signal.SIGTERM)
    try:
        check(program.wait(10) == 0, "SIGTERM ends it with status 0")
    except subprocess.TimeoutExpired:
        check(False, "SIGTERM ends it")
        program.kill()
    state = Path(os.environ["XDG_STATE_HOME"]) / "Tamsy Music" / "window"
    check(state.is_file(), "its size is stored")
    complaints = [line for line in log.read_text().splitlines() if "qrc:" in line or "ERROR:" in line]
    check(not complaints, f"nothing to complain of {complaints}")
    return 1 if faults else 0


sys.exit(main(sys.argv[1]))
