"""Listens to what the sound server plays, and tells which recording that is and from where."""
import subprocess
import threading
import time

import numpy as np

RATE = 48000
SILENCE = -70  # decibels below full scale
_STEP = 6  # recordings are compared at 8,000 samples a second
_NAMES = ("C", "C♯", "D", "E♭", "E", "F", "F♯", "G", "A♭", "A", "B♭", "B")


def decode(path):
    """A file's sound by another decoder, on one channel, at the rate of comparison."""
    sound = subprocess.run(["ffmpeg", "-v", "error", "-nostdin", "-i", f"file:{path}", "-ac", "1",
                            "-ar", str(RATE // _STEP), "-f", "f32le", "-"], check=True, stdout=subprocess.PIPE)
    return np.frombuffer(sound.stdout, np.float32)


def level(sound):
    """Decibels below full scale."""
    return 20 * np.log10(max(1e-9, float(np.sqrt(np.mean(np.square(sound)))))) if len(sound) else -180.0


def tones(sound, count=3):
    """The names of the strongest tones, the loudest first."""
    strength = np.abs(np.fft.rfft(sound * np.hanning(len(sound))))
    frequencies = np.fft.rfftfreq(len(sound), 1 / RATE)
    heard = {}
    for index in np.argsort(strength)[::-1][:400]:
        if not 50 < frequencies[index] < 4000:
            continue
        pitch = round(69 + 12 * np.log2(frequencies[index] / 440))
        heard.setdefault(f"{_NAMES[pitch % 12]}{pitch // 12 - 1}", None)
    return list(heard)[:count]


class Recording:
    """Everything that the output plays from now on."""

    def __init__(self, device="tamsy.monitor"):
        self._recorder = subprocess.Popen(
            ["parec", "--raw", f"--device={device}", "--format=float32le", f"--rate={RATE}", "--channels=2",
             "--latency-msec=20"], stdout=subprocess.PIPE)
        self._sound = bytearray()
        self._newest = None
        self._lock = threading.Lock()
        threading.Thread(target=self._listen, daemon=True).start()

    def _listen(self):
        while chunk := self._recorder.stdout.read1(65536):
            with self._lock:
                self._sound += chunk
                self._newest = time.monotonic()

    def started(self):
        return self._newest is not None

    def between(self, start, end):
        """What was heard between two moments of the monotonic clock, on one channel."""
        with self._lock:
            sound = np.frombuffer(bytes(self._sound[:len(self._sound) // 8 * 8]), np.float32).reshape(-1, 2)
            newest = self._newest
        first, last = (max(0, len(sound) - int((newest - at) * RATE)) for at in (start, end))
        return sound[first:last].mean(1)

    def stop(self):
        self._recorder.terminate()
        self._recorder.wait()


class Collection:
    """The recordings that may be heard, by title."""

    def __init__(self, files):
        self._sounds = {title: decode(path) for title, path in files.items()}

    def recognise(self, sound):
        """Title, second in it and likeness (1 is the same) of what a piece of sound comes from."""
        sample = sound[:len(sound) // _STEP * _STEP].reshape(-1, _STEP).mean(1)
        if len(sample) < 1000 or level(sound) < SILENCE:
            return None, 0.0, 0.0
        return max((self._place(title, sample) for title in self._sounds), key=lambda found: found[2])

    def _place(self, title, sample):
        whole = self._sounds[title]
        if len(whole) < len(sample):
            return title, 0.0, 0.0
        size = 1 << (len(whole) + len(sample)).bit_length()
        likeness = np.fft.irfft(np.fft.rfft(whole, size) * np.conj(np.fft.rfft(sample, size)))
        likeness = likeness[:len(whole) - len(sample) + 1]
        energy = np.concatenate(([0], np.cumsum(np.square(whole, dtype=np.float64))))
        energy = np.sqrt(energy[len(sample):] - energy[:-len(sample)]) * np.linalg.norm(sample)
        likeness = likeness / np.maximum(energy, 1e-3 * energy.max())
        best = int(np.argmax(likeness))
        return title, best * _STEP / RATE, float(likeness[best])
