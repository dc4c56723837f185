#!/usr/bin/env python3
"""Draws Gears.Avi, the animation of the progress window: two gears turning, 48 x 48, 8 bits, uncompressed."""
import math
import struct
import sys

SIZE, FRAMES, TEETH = 48, 12, 8
BACK, DARK, LIGHT, RIM = range(4)
PALETTE = [(240, 240, 240), (64, 92, 140), (140, 170, 214), (34, 54, 92)]


def gear(x, y, cx, cy, radius, turn):
    """Colour of one point of a gear, or None outside it."""
    dx, dy = x - cx, y - cy
    distance = math.hypot(dx, dy)
    if distance < radius * 0.3:
        return None
    wave = math.cos(TEETH * (math.atan2(dy, dx) - turn))
    edge = radius * (1.0 if wave > 0 else 0.8)
    if distance > edge:
        return None
    if distance > edge - 1.6 or distance < radius * 0.3 + 1.4:
        return RIM
    return LIGHT if dx + dy < 0 else DARK


def frame(number):
    turn = 2 * math.pi / TEETH * number / FRAMES
    rows = []
    for y in reversed(range(SIZE)):  # bitmaps are stored bottom up
        row = bytearray()
        for x in range(SIZE):
            colour = gear(x + 0.5, y + 0.5, 18, 19, 17, turn)
            if colour is None:
                colour = gear(x + 0.5, y + 0.5, 35, 35, 12, math.pi / TEETH - turn)
            row.append(BACK if colour is None else colour)
        rows.append(bytes(row))
    return b"".join(rows)


def chunk(name, data):
    return name + struct.pack("<I", len(data)) + data + (b"\0" if len(data) % 2 else b"")


def group(name, data):
    return chunk(b"LIST", name + data)


palette = b"".join(struct.pack("BBBB", b, g, r, 0) for r, g, b in PALETTE)
bitmap = struct.pack("<IiiHHIIiiII", 40, SIZE, SIZE, 1, 8, 0, SIZE * SIZE, 0, 0, len(PALETTE), 0) + palette
delay = 80000  # microseconds
main = struct.pack("<14I", delay, SIZE * SIZE * 13, 0, 0x10, FRAMES, 0, 1, SIZE * SIZE, SIZE, SIZE, 0, 0, 0, 0)
stream = b"vids" + b"DIB " + struct.pack("<IHHIIIIIIIIhhhh", 0, 0, 0, 0, delay, 1000000, 0, FRAMES, SIZE * SIZE,
                                         0xFFFFFFFF, 0, 0, 0, SIZE, SIZE)
header = group(b"hdrl", chunk(b"avih", main) + group(b"strl", chunk(b"strh", stream) + chunk(b"strf", bitmap)))
images = b"".join(chunk(b"00db", frame(i)) for i in range(FRAMES))
movie = group(b"movi", images)
index = b""
offset = 4
for _ in range(FRAMES):
    index += b"00db" + struct.pack("<III", 0x10, offset, SIZE * SIZE)
    offset += SIZE * SIZE + 8
body = b"AVI " + header + movie + chunk(b"idx1", index)
with open(sys.argv[1] if len(sys.argv) > 1 else "Gears.Avi", "wb") as out:
    out.write(b"RIFF" + struct.pack("<I", len(body)) + body)
