#!/usr/bin/env python3
"""Writes resources/sounds/notify.wav, the new-mail chime: two soft bell tones
(A5, then E6) with a quick attack and a gentle decay, 16 kHz mono, 16-bit PCM."""
import math
import os
import struct
import wave

RATE = 16000
NOTES = [(880.0, 0.0, 0.16), (1318.5, 0.09, 0.22)]  # frequency, start, length (s)
LENGTH = 0.32

samples = [0.0] * int(RATE * LENGTH)
for frequency, start, length in NOTES:
    first = int(start * RATE)
    for i in range(int(length * RATE)):
        t = i / RATE
        attack = min(1.0, t / 0.006)
        decay = math.exp(-t * 14.0)
        # A little of the octave above makes it sound like a bell rather than a beep.
        tone = math.sin(2 * math.pi * frequency * t) + 0.25 * math.sin(4 * math.pi * frequency * t)
        if first + i < len(samples):
            samples[first + i] += 0.32 * attack * decay * tone

path = os.path.join(os.path.dirname(__file__), "..", "resources", "sounds", "notify.wav")
with wave.open(path, "wb") as out:
    out.setnchannels(1)
    out.setsampwidth(2)
    out.setframerate(RATE)
    out.writeframes(b"".join(struct.pack("<h", int(max(-1.0, min(1.0, s)) * 32767)) for s in samples))
