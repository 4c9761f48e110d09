"""The instruments of the demonstration's pieces: each gives one note as samples from -1 to 1.

All take a frequency in hertz and the seconds that the note is held; most ring on after that.
"""
from functools import lru_cache

import numpy as np

RATE = 44100
_noise = np.random.default_rng(20240601)


def _clock(seconds):
    return np.arange(int(seconds * RATE), dtype=np.float32) / RATE


def _edges(samples, attack, release):
    """Fades a note in and out over these seconds, so that it starts and ends without a click."""
    rise, fall = int(attack * RATE), int(release * RATE)
    samples[:rise] *= np.linspace(0, 1, rise, dtype=np.float32)
    samples[-fall:] *= np.linspace(1, 0, fall, dtype=np.float32) ** 2
    return samples


def _partials(frequency):
    return range(1, max(2, min(12, int(9000 / frequency))))


@lru_cache(maxsize=None)
def piano(frequency, held):
    t = _clock(held + 1.2)
    note = np.zeros_like(t)
    for k in _partials(frequency):
        # A stiff string's upper partials lie a little too high and die sooner.
        partial = frequency * k * np.sqrt(1 + 0.0004 * k * k)
        decay = np.exp(-t * (0.9 + 0.45 * k) * (frequency / 330) ** 0.4)
        note += np.sin(2 * np.pi * partial * t, dtype=np.float32) * decay / k**1.3
    damper = np.where(t > held, np.exp(-(t - held) * 5), 1)
    return _edges(0.45 * note * damper, 0.004, 0.2)


@lru_cache(maxsize=None)
def guitar(frequency, held):
    """A plucked string: a burst of noise that runs round a loop and is smoothed at each turn."""
    period = int(RATE / frequency)
    loop = np.convolve(_noise.uniform(-1, 1, period + 4), np.ones(5) / 5, "valid").astype(np.float32)
    turns = int((held + 1.0) * frequency) + 2
    string = np.empty(turns * period, dtype=np.float32)
    for turn in range(turns):
        string[turn * period:(turn + 1) * period] = loop
        loop = 0.4985 * (loop + np.roll(loop, 1))
    # The loop is a whole number of samples long; reading it at another speed puts it in tune.
    steps = np.arange(0, len(string) - 1, (frequency * period) / RATE)
    return _edges(0.9 * np.interp(steps, np.arange(len(string)), string).astype(np.float32), 0.002, 0.4)


@lru_cache(maxsize=None)
def strings(frequency, held):
    t = _clock(held + 0.9)
    note = np.zeros_like(t)
    for detune in (0.9965, 1.0, 1.0038):
        for k in _partials(frequency):
            note += np.sin(2 * np.pi * frequency * detune * k * t + k * detune * 40, dtype=np.float32) / k**1.7
    return _edges(0.14 * note, min(0.5, held / 2), 0.9)


@lru_cache(maxsize=None)
def bell(frequency, held):
    t = _clock(held + 1.6)
    strike = 2.2 * np.exp(-t * 4)
    return _edges(0.5 * np.exp(-t * 2.2) * np.sin(
        2 * np.pi * frequency * t + strike * np.sin(2 * np.pi * 3.5 * frequency * t)), 0.002, 0.4)


@lru_cache(maxsize=None)
def flute(frequency, held):
    t = _clock(held + 0.15)
    vibrato = 0.006 * np.clip(t - 0.25, 0, 0.4) / 0.4 * np.sin(2 * np.pi * 5.2 * t)
    phase = 2 * np.pi * np.cumsum(frequency * (1 + vibrato)) / RATE
    note = np.sin(phase) + 0.32 * np.sin(2 * phase) + 0.1 * np.sin(3 * phase)
    breath = np.convolve(_noise.normal(0, 1, len(t) + 8), np.ones(9) / 9, "valid")
    return _edges((0.4 * note + 0.012 * breath).astype(np.float32), 0.06, 0.12)


@lru_cache(maxsize=None)
def bass(frequency, held):
    t = _clock(held + 0.15)
    note = np.sin(2 * np.pi * frequency * t) + 0.4 * np.exp(-t * 5) * np.sin(4 * np.pi * frequency * t)
    return _edges((0.55 * note * np.exp(-t * 0.8)).astype(np.float32), 0.008, 0.12)


@lru_cache(maxsize=None)
def kick():
    t = _clock(0.35)
    return _edges((0.9 * np.sin(2 * np.pi * (46 * t + 5 * (1 - np.exp(-t * 30)))) * np.exp(-t * 11)), 0.001, 0.05)


@lru_cache(maxsize=None)
def brush():
    t = _clock(0.22)
    return _edges((0.16 * _noise.normal(0, 1, len(t)) * np.exp(-t * 20)).astype(np.float32), 0.004, 0.05)


@lru_cache(maxsize=None)
def hat():
    t = _clock(0.09)
    return _edges((0.1 * np.diff(_noise.normal(0, 1, len(t) + 1)) * np.exp(-t * 60)).astype(np.float32), 0.001, 0.02)


def room(dry, seconds, share):
    """Adds the sound of a room that rings for `seconds` to a stereo mix, as `share` of it."""
    t = _clock(seconds)
    size = 1 << int(np.ceil(np.log2(len(dry) + len(t))))
    wet = np.empty((len(dry) + len(t), 2), dtype=np.float32)
    for side in range(2):
        echo = np.convolve(_noise.normal(0, 1, len(t) + 3), np.ones(4) / 4, "valid") * np.exp(-t * 6.9 / seconds)
        echo /= np.sqrt(np.sum(echo**2))
        wet[:, side] = np.fft.irfft(np.fft.rfft(dry[:, side], size) * np.fft.rfft(echo, size))[:len(wet)]
    wet *= share
    wet[:len(dry)] += (1 - share) * dry
    return wet
