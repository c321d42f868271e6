#!/usr/bin/env python3
"""Writes resources/sound/theme.wav: the program's short theme song, "Check's in the Mail".

A cheerful eight-bar tune in C major on a soft plucked tone, 11025 Hz, 8-bit mono, so the
file stays small. Run from the repository's top folder.
"""
import math
import struct
import wave

RATE = 11025
BEAT = 0.18  # seconds per eighth note
NOTES = {'C4': 261.63, 'D4': 293.66, 'E4': 329.63, 'F4': 349.23, 'G4': 392.00, 'A4': 440.00,
         'B4': 493.88, 'C5': 523.25, 'D5': 587.33, 'E5': 659.25, 'G5': 783.99, 'R': 0.0}
# (note, eighths): "Van-try! Van-try!" then the check arrives.
TUNE = [('C5', 1), ('G4', 1), ('C5', 1), ('G4', 1), ('E5', 2), ('R', 2),
        ('D5', 1), ('C5', 1), ('B4', 1), ('A4', 1), ('G4', 3), ('R', 1),
        ('E4', 1), ('G4', 1), ('C5', 1), ('E5', 1), ('D5', 2), ('C5', 1), ('A4', 1),
        ('G4', 1), ('A4', 1), ('B4', 1), ('D5', 1), ('C5', 4),
        ('E5', 1), ('G5', 1), ('E5', 1), ('C5', 1), ('C5', 4)]


def pluck(freq, seconds):
    n = int(RATE * seconds)
    out = []
    for i in range(n):
        t = i / RATE
        if freq == 0.0:
            out.append(0.0)
            continue
        env = math.exp(-4.0 * t / seconds) * min(1.0, i / 60)
        v = math.sin(2 * math.pi * freq * t) + 0.35 * math.sin(4 * math.pi * freq * t)
        out.append(0.45 * env * v)
    return out


samples = []
for note, eighths in TUNE:
    samples += pluck(NOTES[note], BEAT * eighths)
with wave.open('resources/sound/theme.wav', 'wb') as w:
    w.setnchannels(1)
    w.setsampwidth(1)
    w.setframerate(RATE)
    w.writeframes(bytes(max(0, min(255, int(128 + 127 * s))) for s in samples))
