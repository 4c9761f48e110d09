"""The tour itself: python3 -m demo_tour program library pictures"""
import re
import subprocess
import sys
import time
from pathlib import Path

from demo_music.catalogue import LIBRARY

from . import profile
from .ears import RATE, SILENCE, Collection, Recording, level, tones
from .window import RIGHT, Window, key, type_text, wait_for

# The step of the sound server and the grain of a seek, in seconds.
NEAR = 0.15
# Another piece never gets that far; a busy machine's gaps cost the right one some of its likeness.
ALIKE = 0.45
# What was clicked has a moment to be heard.
MOMENT = 0.3
BUTTON = ("push button", "button")


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
        # These stay as long as the window; looking them up again and again would take its time.
        self.bar = wait_for(lambda: self.window.find("播放控制", ("tool bar",)))
        self.play_button = wait_for(lambda: self.window.find("播放 / 暂停", BUTTON))
        self.slider = wait_for(lambda: self.window.find("播放位置", ("slider",)))

    def say(self, good, text):
        print(f"  {'  ' if good else '✗ '}{text}", flush=True)
        if not good:
            self.faults.append(text)

    def size(self):
        return "{2} × {3}".format(*self.window.place())

    def picture(self, name, window=None):
        self.pictures.mkdir(parents=True, exist_ok=True)
        (window or self.window).save_picture(self.pictures / f"{name}.png")

    # What is seen

    def rows(self):
        return self.window.names("table row")

    def titles(self):
        """A row's name begins with its title."""
        known = [r.title for r in LIBRARY]
        return [next((title for title in known if row.startswith(title + " ")), row) for row in self.rows()]

    def time_shown(self):
        for part in self.window.walk(self.bar):
            if match := re.fullmatch(r"(\d+):(\d\d) / (\d+):(\d\d)", part.get_name()):
                minutes, seconds, all_minutes, all_seconds = map(int, match.groups())
                return 60 * minutes + seconds, 60 * all_minutes + all_seconds
        return None

    def looks_playing(self):
        """Two bars leave the middle of the button free, the triangle covers it."""
        button = self.window.look(self.play_button).mean(2)
        height, width = button.shape
        middle = button[height // 2, width // 2]
        return abs(middle - button[height // 2, width // 6]) < 40

    def bar_texts(self):
        return [part.get_name() for part in self.window.walk(self.bar)]

    # What is heard

    def listen(self, seconds):
        start = time.monotonic()
        time.sleep(seconds)
        return self.recording.between(start, start + seconds)

    def hear(self, title, at, seconds, clicked):
        """Listens, and holds it against what should be heard: `title`, from its second `at` on since
        some moment after `clicked`."""
        started = time.monotonic() + MOMENT
        sound = self.listen(seconds)[int(MOMENT * RATE):]
        heard, second, likeness = self.collection.recognise(sound)
        good = heard == title and likeness > ALIKE and at - NEAR < second < at + started - clicked + NEAR
        what = f"“{heard}” from {second:.2f} s on, likeness {likeness:.2f}" if heard else "nothing"
        self.say(good, f"heard: {what}, {level(sound):.0f} dB, tones {' '.join(tones(sound))}")

    def see(self, title):
        """Holds what the bar shows against the title that should be playing."""
        good = wait_for(lambda: title in self.bar_texts(), 2) and self.looks_playing()
        button = "pause" if self.looks_playing() else "play"
        self.say(good, f"seen: {'，'.join(self.bar_texts())}; the button says {button}")

    def silence(self, seconds):
        """Listens, and holds it against silence."""
        heard = level(self.listen(seconds))
        self.say(heard < SILENCE, f"heard: {'silence' if heard < SILENCE else f'{heard:.0f} dB'}")

    # The stops

    def scan(self):
        print("Three folders stand in the sidebar; each is scanned from its menu.")
        wait_for(lambda: self.window.names("list item") == self.folders)
        seen = self.window.names("list item")
        self.say(seen == self.folders, f"seen: {'、'.join(seen)}")
        for folder in reversed(self.folders):
            self.window.click(self.window.find(folder, ("list item",)))
            self.window.click(self.window.find(folder, ("list item",)), button=RIGHT)
            item = wait_for(lambda: self.window.find("重新扫描", ("menu item",)))
            self.window.click(item)
            wanted = sum(r.path.startswith(folder + "/") for r in LIBRARY)
            wait_for(lambda: len(self.rows()) == wanted)
            self.say(len(self.rows()) == wanted, f"seen: {len(self.rows())} tracks in {folder}")
        titles = {r.title for r in LIBRARY if r.path.startswith(self.folders[0] + "/")}
        self.say(set(self.titles()) == titles, f"seen: {'、'.join(sorted(titles))}")
        self.picture("folder")

    def play(self, title, seconds):
        print(f"A click on “{title}”.")
        row = self.window.find(title + " ", ("table row",))
        clicked = time.monotonic()
        self.window.click(row, across=0.2)
        self.hear(title, 0, seconds, clicked)
        self.see(title)

    def pause_and_go_on(self, title):
        print("A click on pause, another on play.")
        self.window.click(self.play_button)
        time.sleep(MOMENT)
        before = self.time_shown()
        self.silence(1.5)
        after = self.time_shown()
        self.say(after == before and not self.looks_playing(), f"seen: the time at {before[0]} s, then {after[0]} s")
        clicked = time.monotonic()
        self.window.click(self.play_button)
        # The display shows whole seconds.
        self.hear(title, before[0], 3, clicked - 0.5)

    def seek(self, title, share):
        print(f"A click on the slider at {share:.0%}.")
        duration = self.time_shown()[1]
        clicked = time.monotonic()
        self.window.click(self.slider, across=share)
        # A slider's ends lie half a handle inside.
        self.hear(title, share * duration - 0.5, 4, clicked - 1)
        self.see(title)

    def next_by_key(self, title):
        print("Ctrl+Right.")
        clicked = time.monotonic()
        key("ctrl+Right")
        self.hear(title, 0, 4, clicked)
        self.see(title)

    def play_by_remote_control(self, title):
        print("The play key of a keyboard, as a desktop passes it on.")
        subprocess.run(["playerctl", "--player=tamsy-music", "play-pause"], check=False)
        time.sleep(MOMENT)
        self.see(title)

    def search(self, text, expected):
        print(f"“{text}” in the search field.")
        self.window.click(self.window.find("搜索音乐"))
        type_text(text)
        wait_for(lambda: len(self.rows()) == len(expected), 2)
        shown = self.titles()
        self.say(sorted(shown) == sorted(expected), f"seen: {'、'.join(shown)}")
        self.picture("search")

    def open_now_playing(self, title):
        print("A click on the title in the bar.")
        self.window.click(self.window.find(title, BUTTON))
        self.large = Window(self.program, besides=self.window)
        good = wait_for(lambda: self.large.find("曲目列表", BUTTON)) and title in self.large.names("label")
        self.say(good, "seen: a window of its own, {2} × {3}".format(*self.large.place()))
        time.sleep(1)
        self.picture("now-playing", self.large)

    def follow_lyrics(self, title):
        print("A click on the lyrics, another at the start of the time bar.")
        self.large.click(self.large.find("歌词", BUTTON))
        self.large.click(self.large.find("播放位置", ("slider",)), across=0.02)
        text = next(r.sidecar_lyrics for r in LIBRARY if r.title == title)
        lines = [(int(minute) * 60 + float(second), words)
                 for minute, second, words in re.findall(r"^\[(\d+):([\d.]+)\](.*)$", text, re.MULTILINE)]
        for _ in range(2):
            time.sleep(3)
            before = self.time_shown()[0]
            seen = wait_for(lambda: self.large.selected("list item"), 2)
            # The display shows whole seconds.
            due = [words for (start, words), (end, _) in zip(lines, lines[1:] + [(1e9, "")])
                   if start < self.time_shown()[0] + 1 and end > before - 0.5]
            self.say(seen in due, f"seen: “{seen}” at {before} s")
        self.picture("lyrics", self.large)

    def pick(self, title):
        print(f"A click on the list, another on “{title}” in it.")
        self.large.click(self.large.find("曲目列表", BUTTON))
        row = wait_for(lambda: self.large.find(title + " ", ("list item",)))
        time.sleep(MOMENT)
        self.picture("picker", self.large)
        clicked = time.monotonic()
        self.large.click(row)
        self.hear(title, 0, 4, clicked)
        key("ctrl+w")
        self.say(wait_for(lambda: not self.large.is_up(), 2), "Ctrl+W closed the window")
        self.see(title)

    def darken(self):
        print("The desktop turns dark.")
        with profile.dark_desktop():
            wait_for(lambda: self.window.look().mean() < 80, 3)
            self.say(self.window.look().mean() < 80, f"seen: the window at {self.window.look().mean() / 2.55:.0f} % of white")
            self.picture("dark")

    def quit(self):
        print("Ctrl+Q.")
        start = time.monotonic()
        key("ctrl+q")
        wait_for(lambda: self.program.poll() is not None, 10)
        code = self.program.poll()
        self.say(code == 0, f"ended with {code} after {time.monotonic() - start:.2f} s")
        wanted = [sum(r.path.startswith(folder + "/") for r in LIBRARY) for folder in self.folders]
        self.say(profile.stored_tracks() == wanted, f"stored: {profile.stored_tracks()} tracks")

    def go(self):
        self.scan()
        self.play("潮汐来信", 6)
        self.picture("playing")
        self.pause_and_go_on("潮汐来信")
        self.seek("潮汐来信", 0.4)
        self.open_now_playing("潮汐来信")
        self.follow_lyrics("潮汐来信")
        rows = self.titles()
        self.pick(rows[(rows.index("潮汐来信") + 2) % len(rows)])
        self.next_by_key(rows[(rows.index("潮汐来信") + 3) % len(rows)])
        self.window.click(self.window.find("City Lights", ("list item",)))
        self.search("odd", ["Paper Lanterns", "Untitled Sketch No. 4"])
        self.play("Untitled Sketch No. 4", 4)
        print("The space key.")
        key("space")
        time.sleep(MOMENT)
        self.silence(0.5)
        self.play_by_remote_control("Untitled Sketch No. 4")
        self.darken()
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
