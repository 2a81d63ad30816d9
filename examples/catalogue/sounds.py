"""Bird calls, synthesised note by note and written as small wave files.

8000 samples a second and 8 bits are enough for a sketch of a song and keep a second of sound
below 8 KiB. No note may go above 3900 Hz, since half the sample rate is the limit.
"""

import io
import math
import random
import wave
from typing import List, NamedTuple, Sequence

RATE = 8000
LIMIT = 1.0


class Note(NamedTuple):
    """A sound from `start` for `length` seconds that glides from one pitch to another.

    A note with `wobble` shakes up and down that many times a second. One with `rough` above 0 has
    that share of noise in it, up to 1 for a plain knock.
    """
    start: float
    length: float
    low: float
    high: float
    loud: float = 0.9
    wobble: float = 0.0
    rough: float = 0.0


def repeated(count: int, every: float, note: Note) -> List[Note]:
    """The same note again and again, as in a trill or a drumming."""
    return [note._replace(start=note.start + index * every) for index in range(count)]


def samples(notes: Sequence[Note], seed: str) -> List[float]:
    """The sound as numbers between -1 and 1."""
    rng = random.Random(f"sound {seed}")
    length = min(LIMIT, max(note.start + note.length for note in notes) + 0.03)
    mixed = [0.0] * int(length * RATE)
    for note in notes:
        phase = 0.0
        count = int(note.length * RATE)
        for index in range(count):
            at = int(note.start * RATE) + index
            if at >= len(mixed):
                break
            share = index / count
            pitch = note.low + (note.high - note.low) * share
            if note.wobble:
                pitch *= 1 + 0.09 * math.sin(2 * math.pi * note.wobble * index / RATE)
            phase += 2 * math.pi * min(pitch, 3900) / RATE
            tone = 0.8 * math.sin(phase) + (0.2 * math.sin(2 * phase) if pitch < 1800 else 0.0)
            value = tone * (1 - note.rough) + rng.uniform(-1, 1) * note.rough
            mixed[at] += value * note.loud * _envelope(share, note.rough)
    return [max(-1.0, min(1.0, value)) for value in mixed]


def _envelope(share: float, rough: float) -> float:
    """A knock dies away at once; a tone swells and fades."""
    if rough > 0.6:
        return math.exp(-share * 6)
    return math.sin(math.pi * min(1.0, share)) ** 0.6 if share < 1 else 0.0


def wave_file(notes: Sequence[Note], seed: str) -> bytes:
    """The sound as a mono wave file of 8 bits a sample."""
    data = bytes(128 + round(value * 112) for value in samples(notes, seed))
    buffer = io.BytesIO()
    with wave.open(buffer, "wb") as target:
        target.setnchannels(1)
        target.setsampwidth(1)
        target.setframerate(RATE)
        target.writeframes(data)
    return buffer.getvalue()


def duration(notes: Sequence[Note], seed: str) -> float:
    return round(len(samples(notes, seed)) / RATE, 2)


def levels(notes: Sequence[Note], seed: str, count: int = 44) -> List[float]:
    """The loudness of `count` even parts of the sound, the loudest of them being 1."""
    values = samples(notes, seed)
    step = len(values) / count
    peaks = [max(abs(value) for value in values[int(index * step):int((index + 1) * step)])
             for index in range(count)]
    return [peak / max(peaks) for peak in peaks]
