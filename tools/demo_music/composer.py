"""Writes small pieces from a key, a line of chords and a handful of parts, and plays them."""
from dataclasses import dataclass

import numpy as np

from . import instruments
from .instruments import RATE

MAJOR = (0, 2, 4, 5, 7, 9, 11)
MINOR = (0, 2, 3, 5, 7, 8, 10)
DORIAN = (0, 2, 3, 5, 7, 9, 10)
PENTATONIC = (0, 2, 4, 7, 9)

# How the lead part divides a bar of four beats; a pause is negative.
RHYTHMS = ((1, 1, 2), (1.5, 0.5, 2), (1, 0.5, 0.5, 1, -1), (2, 1, 1), (0.5, 0.5, 1, 1.5, -0.5), (3, -1))


@dataclass(frozen=True)
class Piece:
    key: int  # the tonic, as a MIDI number around 48
    scale: tuple
    chords: tuple  # degrees of the scale, counted from 0, one a bar
    tempo: int  # beats a minute
    seconds: int  # about
    parts: tuple  # pairs of a part's name and its instrument's
    seed: int


def hertz(pitch):
    return round(440 * 2 ** ((pitch - 69) / 12), 3)


class Score:
    """One piece being written onto two channels."""

    def __init__(self, piece):
        self.piece = piece
        self.random = np.random.default_rng(piece.seed)
        self.beat = 60 / piece.tempo
        # Whole rounds of the chords, and one bar to end on.
        self.bars = max(1, round(piece.seconds / (4 * self.beat * len(piece.chords)))) * len(piece.chords) + 1
        self.mix = np.zeros((int(((self.bars + 1) * 4 * self.beat + 3) * RATE), 2), dtype=np.float32)

    def degree(self, step):
        """The pitch of a step of the scale, which goes on in both directions."""
        octave, index = divmod(step, len(self.piece.scale))
        return self.piece.key + 12 * octave + self.piece.scale[index]

    def chord(self, bar):
        """The scale steps of a bar's chord; the last bar comes home."""
        root = 0 if bar == self.bars - 1 else self.piece.chords[bar % len(self.piece.chords)]
        return (root, root + 2, root + 4)

    def add(self, sound, beat, loudness, side=0.0):
        # Nobody plays to the millisecond.
        start = max(0, int((beat * self.beat + self.random.normal(0, 0.004)) * RATE))
        sound = sound[:len(self.mix) - start] * loudness
        self.mix[start:start + len(sound), 0] += sound * np.sqrt((1 - side) / 2)
        self.mix[start:start + len(sound), 1] += sound * np.sqrt((1 + side) / 2)

    def note(self, name, pitch, beat, beats, loudness, side=0.0):
        self.add(getattr(instruments, name)(hertz(pitch), round(beats * self.beat, 3)), beat, loudness, side)

    def pad(self, name):
        for bar in range(self.bars):
            for index, step in enumerate(self.chord(bar)):
                self.note(name, self.degree(step) + 12, bar * 4, 4, 0.35, (index - 1) * 0.6)

    def arpeggio(self, name):
        order = [(0, 1, 2, 3, 2, 1, 2, 1), (0, 2, 1, 3, 2, 3, 1, 2), (0, 2, 3, 2, 4, 3, 2, 1)][self.piece.seed % 3]
        for bar in range(self.bars - 1):
            root, third, fifth = self.chord(bar)
            tones = (root, fifth, root + len(self.piece.scale), third + len(self.piece.scale),
                     fifth + len(self.piece.scale))
            for index, tone in enumerate(order):
                self.note(name, self.degree(tones[tone]), bar * 4 + index / 2, 1.5,
                          0.5 + 0.12 * (index % 4 == 0), 0.25 * np.sin(index))
        self.strum(name, self.bars - 1, 0)

    def strum(self, name, bar, beat):
        root = self.chord(bar)[0]
        for index, step in enumerate((*self.chord(bar), root + len(self.piece.scale))):
            self.note(name, self.degree(step), bar * 4 + beat + index * 0.06, 4 - beat, 0.5, 0.2 * (index - 1.5))

    def chords(self, name):
        for bar in range(self.bars):
            self.strum(name, bar, 0)
            if bar < self.bars - 1:
                self.strum(name, bar, 2.5 if bar % 2 else 2)

    def bassline(self, name):
        for bar in range(self.bars):
            root = self.degree(self.chord(bar)[0]) - 12
            self.note(name, root, bar * 4, 2, 0.8)
            self.note(name, root + (7 if bar % 4 == 3 else 0), bar * 4 + 2.5, 1.5, 0.6)

    def drums(self, _):
        for bar in range(2, self.bars - 1):
            for beat in range(4):
                self.add(instruments.kick() if beat % 2 == 0 else instruments.brush(), bar * 4 + beat, 0.7)
                for half in (0, 0.5):
                    self.add(instruments.hat(), bar * 4 + beat + half, 0.5 + 0.3 * (half > 0), 0.3)

    def lead(self, name):
        """A tune in the shape A A' B A'': four bars of motif, answered, left, and taken up again."""
        motif = [RHYTHMS[self.random.integers(len(RHYTHMS))] for _ in range(2)] * 2
        octave = 2 * len(self.piece.scale)
        step = octave
        for bar in range(2, self.bars - 1):
            rhythm = motif[bar % 4] if bar % 16 < 8 or bar % 16 > 11 else RHYTHMS[self.random.integers(len(RHYTHMS))]
            beat = bar * 4
            for length in rhythm:
                if length > 0:
                    step = self._next_step(step, octave, bar, beat % 2 == 0)
                    self.note(name, self.degree(step), beat, length, 0.55, -0.15)
                beat += abs(length)
        self.note(name, self.degree(octave), (self.bars - 1) * 4, 4, 0.5, -0.15)

    def _next_step(self, step, octave, bar, strong):
        step += int(self.random.choice((-2, -1, -1, 0, 1, 1, 2)))
        # Drawn back to the middle of its range; strong beats sound with the chord.
        step = min(max(step, octave - 4), octave + 6)
        if strong:
            size = len(self.piece.scale)
            tones = [tone % size for tone in self.chord(bar)]
            step += min((d for d in range(-2, 3) if (step + d) % size in tones), key=abs, default=0)
        return step


def play(piece):
    """The piece as stereo samples from -1 to 1."""
    score = Score(piece)
    for part, instrument in piece.parts:
        getattr(score, part)(instrument)
    sound = instruments.room(score.mix, 1.8, 0.28)
    end = int((score.bars * 4 * score.beat + 2.0) * RATE)
    sound = sound[:end]
    fade = int(2.5 * RATE)
    sound[-fade:] *= np.linspace(1, 0, fade, dtype=np.float32)[:, None] ** 1.5
    sound = np.tanh(1.3 * sound / np.quantile(np.abs(sound), 0.999))
    return sound * (0.7 / np.max(np.abs(sound)))
