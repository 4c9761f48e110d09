"""The tour itself: python3 -m demo_tour program library pictures"""
import re
import subprocess
import sys
import time
from pathlib import Path

from demo_music.catalogue import LIBRARY

from . import profile
from .ears import SILENCE, Collection, Recording, level, tones
from .window import RIGHT, Window, key, type_text, wait_for

# Rounding of the display, the step of the sound server, the grain of a seek.
NEAR = 0.35


class Tour:
    def __init__(self, program, library, pictures):
        self.library, self.pictures = Path(library).resolve(), Path(pictures)
        self.faults = []
        self.folders = list(dict.fromkeys(r.path.split("/")[0] for r in LIBRARY))
        self.collection = Collection({r.title: self.library / r.path for r in LIBRARY})
        profile.write([self.library / folder for folder in self.folders])
        self.recording = Recording()
        wait_for(self.recording.started)
        start = time.monotonic()
        self.program = subprocess.Popen([program], stdout=subprocess.DEVNULL)
        self.window = Window(self.program)
        self.say(True, f"a window after {time.monotonic() - start:.1f} s, {self.size()}")

    def say(self, good, text):
        print(f"  {'  ' if good else '✗ '}{text}", flush=True)
        if not good:
            self.faults.append(text)

    def size(self):
        return "{2} × {3}".format(*self.window.place())

    def picture(self, name):
        self.pictures.mkdir(parents=True, exist_ok=True)
        self.window.save_picture(self.pictures / f"{name}.png")

    # What is seen

    def rows(self):
        return self.window.names("table row")

    def time_shown(self):
        for part in self.window.walk():
            if match := re.fullmatch(r"(\d+):(\d\d) / (\d+):(\d\d)", part.get_name()):
                minutes, seconds, all_minutes, all_seconds = map(int, match.groups())
                return 60 * minutes + seconds, 60 * all_minutes + all_seconds
        return None

    def play_button(self):
        return self.window.find("播放 / 暂停", ("push button", "button"))

    def looks_playing(self):
        """Two bars leave the middle of the button free, the triangle covers it."""
        button = self.window.look(self.play_button()).mean(2)
        height, width = button.shape
        middle = button[height // 2, width // 2]
        return abs(middle - button[height // 2, width // 6]) < 40

    def title_shown(self, title):
        bar = self.window.find("播放控制", ("tool bar",))
        return bar is not None and any(part.get_name() == title for part in self.window.walk(bar))

    # What is heard

    def listen(self, seconds):
        start = time.monotonic()
        time.sleep(seconds)
        return self.recording.between(start, start + seconds)

    def hear(self, title, at, seconds, since=None):
        """Listens, and holds it against where in which recording the player should be."""
        started = time.monotonic()
        # What was clicked has a moment to be heard.
        sound = self.listen(seconds)[int(0.3 * 48000):]
        heard, second, likeness = self.collection.recognise(sound)
        if heard is None:
            self.say(False, f"heard: nothing ({level(sound):.0f} dB), where “{title}” should be")
            return 0.0
        expected = at + (started - since if since else 0) + 0.3
        good = heard == title and likeness > 0.9 and abs(second - expected) < NEAR + 0.3
        self.say(good, f"heard: “{heard}” from {second:.2f} s (likeness {likeness:.2f}), {level(sound):.0f} dB, "
                       f"tones {' '.join(tones(sound))}")
        return second - 0.3 + seconds

    def see(self, title):
        """Holds what the bar shows against the title that should be playing."""
        shown = wait_for(lambda: self.title_shown(title), 2)
        clock = self.time_shown() or (-1, -1)
        self.say(bool(shown) and self.looks_playing(),
                 f"seen: “{title}” in the bar, {clock[0]} s of {clock[1]} s, the pause button")

    # The stops

    def scan(self):
        print("Three folders stand in the sidebar; each is scanned from its menu.")
        self.say(self.window.names("list item") == self.folders, f"seen: {'、'.join(self.window.names('list item'))}")
        for folder in reversed(self.folders):
            self.window.click(self.window.find(folder, ("list item",)))
            self.window.click(self.window.find(folder, ("list item",)), button=RIGHT)
            item = wait_for(lambda: self.window.find("重新扫描", ("menu item",)))
            self.window.click(item)
            wanted = sum(r.path.startswith(folder + "/") for r in LIBRARY)
            wait_for(lambda: len(self.rows()) == wanted)
            self.say(len(self.rows()) == wanted, f"seen: {len(self.rows())} tracks in {folder}")
        titles = {r.title for r in LIBRARY if r.path.startswith(self.folders[0] + "/")}
        self.say({row.split(", ")[0] for row in self.rows()} == titles, f"seen: {'、'.join(sorted(titles))}")
        self.picture("folder")

    def play(self, title, seconds):
        print(f"A click on “{title}”.")
        self.window.click(self.window.find(title + ", ", ("table row",)), across=0.2)
        reached = self.hear(title, 0, seconds)
        self.see(title)
        return reached

    def pause_and_go_on(self, title):
        print("A click on pause, another on play.")
        self.window.click(self.play_button())
        time.sleep(0.3)
        before = self.time_shown()
        sound = self.listen(1.5)
        self.say(level(sound) < SILENCE and self.time_shown() == before and not self.looks_playing(),
                 f"heard: silence ({level(sound):.0f} dB); seen: the play button, the time stands at {before[0]} s")
        self.window.click(self.play_button())
        sound = self.listen(2)[int(0.3 * 48000):]
        heard, second, _ = self.collection.recognise(sound)
        self.say(heard == title and before[0] - 0.6 < second - 0.3 < before[0] + 1.1,
                 f"heard: “{heard}” goes on at {second:.2f} s")

    def seek(self, title, share):
        print(f"A click on the slider at {share:.0%}.")
        slider = self.window.find("播放位置", ("slider",))
        duration = self.time_shown()[1]
        self.window.click(slider, across=share)
        self.hear(title, share * duration, 2.5)
        self.see(title)

    def next_by_key(self, title):
        print("Ctrl+Right.")
        key("ctrl+Right")
        self.hear(title, 0, 2.5)
        self.see(title)

    def search(self, text, expected):
        print(f"“{text}” in the search field.")
        self.window.click(self.window.find("搜索音乐"))
        type_text(text)
        wait_for(lambda: len(self.rows()) == len(expected), 2)
        shown = [row.split(", ")[0] for row in self.rows()]
        self.say(sorted(shown) == sorted(expected), f"seen: {'、'.join(shown)}")
        self.picture("search")

    def quit(self):
        print("Ctrl+Q.")
        start = time.monotonic()
        key("ctrl+q")
        wait_for(lambda: self.program.poll() is not None, 5)
        code = self.program.poll()
        self.say(code == 0, f"ended with {code} after {time.monotonic() - start:.2f} s")
        wanted = [sum(r.path.startswith(folder + "/") for r in LIBRARY) for folder in self.folders]
        self.say(profile.stored_tracks() == wanted, f"stored: {profile.stored_tracks()} tracks")

    def go(self):
        self.scan()
        self.play("潮汐来信", 4)
        self.picture("playing")
        self.pause_and_go_on("潮汐来信")
        self.seek("潮汐来信", 0.6)
        rows = [row.split(", ")[0] for row in self.rows()]
        self.next_by_key(rows[(rows.index("潮汐来信") + 1) % len(rows)])
        self.window.click(self.window.find("City Lights", ("list item",)))
        self.search("odd", ["Paper Lanterns", "Untitled Sketch No. 4"])
        self.play("Untitled Sketch No. 4", 3)
        key("space")
        time.sleep(0.4)
        quiet = level(self.listen(0.5))
        self.say(quiet < SILENCE, f"heard after the space key: silence ({quiet:.0f} dB)")
        self.quit()

    def close(self):
        self.recording.stop()
        if self.program.poll() is None:
            self.program.kill()


def main():
    tour = Tour(*sys.argv[1:4])
    try:
        tour.go()
    finally:
        tour.close()
    print(f"Pictures lie in {tour.pictures}.")
    print("All was as it should be." if not tour.faults else f"{len(tour.faults)} times it was not as it should be.")
    return 1 if tour.faults else 0


sys.exit(main())
