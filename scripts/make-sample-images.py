#!/usr/bin/env python3
"""Writes the sample backgrounds under examples/assets/ with nothing but the standard library.

paper.png  warm watercolour paper, for the watercolour sample
dusk.png   an evening sky over hills with a moon, for the sparkle ring and the ripple
"""
import math
import os
import struct
import zlib

WIDTH, HEIGHT = 360, 640
ROOT = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "examples", "assets")


def write_png(path, width, height, pixel):
    """pixel(x, y) -> (r, g, b) with y = 0 the top row; rows go out with the "up" filter."""
    rows = []
    previous = bytes(width * 3)
    for y in range(height):
        row = bytearray()
        for x in range(width):
            row.extend(max(0, min(255, int(round(c)))) for c in pixel(x, y))
        rows.append(b"\x02" + bytes((a - b) & 0xFF for a, b in zip(row, previous)))
        previous = bytes(row)

    def chunk(kind, data):
        body = kind + data
        return struct.pack(">I", len(data)) + body + struct.pack(">I", zlib.crc32(body))

    header = struct.pack(">IIBBBBB", width, height, 8, 2, 0, 0, 0)
    with open(path, "wb") as out:
        out.write(b"\x89PNG\r\n\x1a\n")
        out.write(chunk(b"IHDR", header))
        out.write(chunk(b"IDAT", zlib.compress(b"".join(rows), 9)))
        out.write(chunk(b"IEND", b""))


def mix(a, b, t):
    return tuple(p + (q - p) * t for p, q in zip(a, b))


def smoothstep(e0, e1, x):
    t = max(0.0, min(1.0, (x - e0) / (e1 - e0)))
    return t * t * (3 - 2 * t)


def paper(x, y):
    u, v = x / WIDTH, y / HEIGHT
    # Slow blotches of warmth, as sized paper takes light.
    warmth = 0.5 * math.sin(6.1 * u + 2.3 * v) * math.sin(4.7 * v - 1.3 * u + 0.8)
    shade = 1.0 - 0.05 * ((u - 0.5) ** 2 + (v - 0.5) ** 2)
    base = (240 + 3 * warmth, 233 + 2 * warmth, 219 - 2 * warmth)
    return tuple(c * shade for c in base)


SKY = [(0.0, (18, 22, 58)), (0.45, (62, 44, 104)), (0.68, (196, 104, 112)), (0.8, (246, 176, 112))]


def sky(v):
    for (v0, c0), (v1, c1) in zip(SKY, SKY[1:]):
        if v <= v1:
            return mix(c0, c1, smoothstep(0.0, 1.0, (v - v0) / (v1 - v0)))
    return SKY[-1][1]


def dusk(x, y):
    u, v = x / WIDTH, y / HEIGHT
    colour = sky(v)
    # The moon and its halo.
    d = math.hypot((u - 0.7) * WIDTH, (v - 0.2) * HEIGHT) / WIDTH
    colour = mix(colour, (250, 236, 214), 0.35 * math.exp(-(d / 0.18) ** 2))
    colour = mix(colour, (252, 246, 232), smoothstep(0.082, 0.075, d))
    # Two ridges of hills, the nearer darker.
    far = 0.74 + 0.03 * math.sin(7.0 * u + 1.0) + 0.015 * math.sin(17.0 * u)
    near = 0.82 + 0.04 * math.sin(4.0 * u + 2.5) + 0.01 * math.sin(23.0 * u + 0.4)
    colour = mix(colour, (64, 40, 78), smoothstep(far - 0.002, far + 0.002, v))
    colour = mix(colour, (28, 22, 44), smoothstep(near - 0.002, near + 0.002, v))
    return colour


def main():
    os.makedirs(ROOT, exist_ok=True)
    for name, pixel in (("paper.png", paper), ("dusk.png", dusk)):
        path = os.path.normpath(os.path.join(ROOT, name))
        write_png(path, WIDTH, HEIGHT, pixel)
        print(f"wrote {path} ({os.path.getsize(path)} bytes)")


if __name__ == "__main__":
    main()
