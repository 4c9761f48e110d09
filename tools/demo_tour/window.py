"""The program's window, from outside: read as a screen reader reads it, looked at, clicked, typed in."""
import os
import subprocess
import time

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi, GLib  # noqa: E402
import numpy as np  # noqa: E402

LEFT, RIGHT = 1, 3


def wait_for(condition, seconds=10):
    """What the condition gives as soon as that is something; None after so many seconds."""
    end = time.monotonic() + seconds
    while True:
        found = condition()
        if found or time.monotonic() > end:
            return found or None
        time.sleep(0.05)


def _xdotool(*arguments):
    subprocess.run(["xdotool", *map(str, arguments)], check=True, stdout=subprocess.DEVNULL)


def key(*names):
    _xdotool("key", *names)


def type_text(text):
    _xdotool("type", "--delay", 60, text)


class Window:
    """A window of a process, the first one or one that wasn't there before. Parts are found by their role
    and name."""

    def __init__(self, process, besides=None):
        self._process, self._besides = process, besides
        Atspi.init()
        self._frame = wait_for(self._find_frame, 30)
        if self._frame is None:
            raise RuntimeError("the program shows no window")

    def _find_frame(self):
        if self._process.poll() is not None:
            raise RuntimeError(f"the program ended with {self._process.returncode}")
        desktop = Atspi.get_desktop(0)
        for application in self._children(desktop):
            try:
                if application.get_process_id() == self._process.pid:
                    # Nothing is remembered on this side: what is read is what is there now.
                    application.set_cache_mask(Atspi.Cache.NONE)
                    return next((w for w in self._children(application) if self._is_wanted(w)), None)
            except GLib.Error:
                continue
        return None

    def _is_wanted(self, frame):
        return self._shows(frame) and (self._besides is None or frame != self._besides._frame)

    @staticmethod
    def _shows(frame):
        return frame.get_state_set().contains(Atspi.StateType.SHOWING)

    def is_up(self):
        try:
            return self._shows(self._frame)
        except GLib.Error:
            return False

    @staticmethod
    def _children(node):
        try:
            return [child for child in map(node.get_child_at_index, range(node.get_child_count())) if child]
        except GLib.Error:
            return []

    def walk(self, node=None):
        """Every part that shows, from the outside in."""
        for child in self._children(node or self._frame):
            try:
                if not child.get_state_set().contains(Atspi.StateType.SHOWING):
                    continue
            except GLib.Error:
                continue  # gone while it was looked at
            yield child
            yield from self.walk(child)

    def names(self, role):
        return [part.get_name() for part in self.walk() if part.get_role_name() == role]

    def selected(self, role):
        """The name of the part with this role that is selected."""
        return next((part.get_name() for part in self.walk() if part.get_role_name() == role
                     and part.get_state_set().contains(Atspi.StateType.SELECTED)), None)

    def find(self, name, roles=()):
        """The first part with this name, or the beginning of it, and one of the roles if any are given."""
        return next((part for part in self.walk() if part.get_name().startswith(name)
                     and (not roles or part.get_role_name() in roles)), None)

    def place(self, part=None):
        """x, y, width and height on the screen."""
        at = (part or self._frame).get_extents(Atspi.CoordType.SCREEN)
        return at.x, at.y, at.width, at.height

    def click(self, part, across=0.5, button=LEFT):
        """Clicks a part at this share of its width, in the middle of its height."""
        x, y, width, height = self.place(part)
        _xdotool("mousemove", int(x + across * width), int(y + height / 2), "click", button)

    def look(self, part=None):
        """The pixels of a part as they stand on the screen, rows of red, green and blue bytes."""
        x, y, width, height = self.place(part)
        shot = subprocess.run(
            ["ffmpeg", "-v", "error", "-f", "x11grab", "-draw_mouse", "0", "-video_size", f"{width}x{height}",
             "-i", f"{os.environ['DISPLAY']}+{x},{y}", "-frames:v", "1", "-pix_fmt", "rgb24", "-f", "rawvideo", "-"],
            check=True, stdout=subprocess.PIPE).stdout
        return np.frombuffer(shot, np.uint8).reshape(height, width, 3).astype(int)

    def save_picture(self, file):
        pixels = self.look()
        height, width = pixels.shape[:2]
        subprocess.run(["ffmpeg", "-v", "error", "-y", "-f", "rawvideo", "-pix_fmt", "rgb24", "-s",
                        f"{width}x{height}", "-i", "-", "-frames:v", "1", f"file:{file}"],
                       input=pixels.astype(np.uint8).tobytes(), check=True)
