#!/usr/bin/env python3
"""Draws the program's icon, src/resources/setup.ico, at each size that windows show it in.

    tools/draw_icon.py src/resources/setup.ico

The picture is a sheet in a fax machine: shapes on a grid of 32, or of 16 for the small sizes, which have fewer details.
At each size the edges are moved to whole pixels first, so that all of them are sharp.
"""
import math
import struct
import sys
import zlib

SIZES = (16, 20, 24, 32, 40, 48, 64, 256)
SMOOTHING = 4  # samples across and down a pixel, for slants and curves

OUTLINE, PAPER, FOLD = (0x5A, 0x6B, 0x7B), (255, 255, 255), (0xC8, 0xD2, 0xDC)
HEADING, LINE = (0x3B, 0x86, 0xCA), (0x8A, 0x99, 0xA8)
BODY, FOOT, SLOT, LAMP = (0x2F, 0x6E, 0xA5), (0x1F, 0x4E, 0x79), (0x17, 0x3A, 0x5C), (0x7E, 0xD8, 0x92)

# colour, left, top, right, bottom, rounding of the corners, how far the upper right corner is cut
SMALL = (16, (
    (BODY, 0, 8, 16, 15, 0, 0), (FOOT, 0, 14, 16, 15, 0, 0),
    (OUTLINE, 3, 0, 13, 9, 0, 0), (PAPER, 4, 1, 12, 9, 0, 0),
    (HEADING, 5, 3, 9, 4, 0, 0), (LINE, 5, 5, 11, 6, 0, 0), (LINE, 5, 7, 11, 8, 0, 0),
    (SLOT, 2, 9, 14, 10, 0, 0), (PAPER, 2, 11, 8, 12, 0, 0), (LAMP, 11, 11, 13, 13, 0, 0),
))
LARGE = (32, (
    (FOOT, 2, 14, 30, 28, 2, 0), (BODY, 2, 14, 30, 25, 2, 0), (BODY, 2, 18, 30, 25, 0, 0),
    (OUTLINE, 7, 1, 25, 18, 0, 5), (PAPER, 8, 2, 24, 18, 0, 5), (FOLD, 19, 2, 24, 7, 0, 5),
    (HEADING, 10, 6, 18, 8, 0, 0), (LINE, 10, 10, 22, 11, 0, 0), (LINE, 10, 13, 22, 14, 0, 0),
    (SLOT, 5, 17, 27, 19, 0, 0), (PAPER, 5, 21, 17, 23, 0, 0), (LAMP, 24, 20, 27, 23, 1.5, 0),
))


def snapped(shape, scale):
    """Halves go inwards at the left and the right, so that frames are even; equal heights stay equal."""
    colour, left, top, right, bottom, rounding, cut = shape
    height = max(math.floor((bottom - top) * scale + 0.5), 1)
    left, top, right = math.floor(left * scale + 0.5), math.floor(top * scale + 0.5), math.ceil(right * scale - 0.5)
    return colour, left, top, max(right, left + 1), top + height, rounding * scale, cut * scale


def holds(shape, x, y):
    _, left, top, right, bottom, rounding, cut = shape
    if not (left <= x < right and top <= y < bottom) or (right - x) + (y - top) < cut:
        return False
    across = max(left + rounding - x, x - (right - rounding), 0)
    down = max(top + rounding - y, y - (bottom - rounding), 0)
    return across * across + down * down <= rounding * rounding or across == 0 or down == 0


def pixel(shapes, x, y):
    """Red, green, blue and opacity, from the samples within the pixel."""
    hit = []
    for i in range(SMOOTHING * SMOOTHING):
        at = (x + (i % SMOOTHING + 0.5) / SMOOTHING, y + (i // SMOOTHING + 0.5) / SMOOTHING)
        hit += [shape[0] for shape in reversed(shapes) if holds(shape, *at)][:1]
    if not hit:
        return 0, 0, 0, 0
    colour = (round(sum(channel) / len(hit)) for channel in zip(*hit))
    return *colour, round(255 * len(hit) / SMOOTHING**2)


def draw(size):
    grid, shapes = SMALL if size < 24 else LARGE
    placed = [snapped(shape, size / grid) for shape in shapes]
    return [[pixel(placed, x, y) for x in range(size)] for y in range(size)]


def as_bitmap(rows):
    """Bottom up, blue first, with a mask of what shows the background."""
    size = len(rows)
    stride = (size + 31) // 32 * 4
    mask = b""
    for row in reversed(rows):
        bits = "".join("1" if point[3] == 0 else "0" for point in row).ljust(stride * 8, "0")
        mask += int(bits, 2).to_bytes(stride, "big")
    colours = b"".join(bytes((b, g, r, a)) for row in reversed(rows) for r, g, b, a in row)
    return struct.pack("<IiiHHIIiiII", 40, size, 2 * size, 1, 32, 0, len(colours) + len(mask), 0, 0, 0, 0) + colours + mask


def as_png(rows):
    def chunk(kind, data):
        return struct.pack(">I", len(data)) + kind + data + struct.pack(">I", zlib.crc32(kind + data))

    lines = b"".join(b"\0" + b"".join(bytes(point) for point in row) for row in rows)
    head = struct.pack(">IIBBBBB", len(rows), len(rows), 8, 6, 0, 0, 0)
    return b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", head) + chunk(b"IDAT", zlib.compress(lines, 9)) + chunk(b"IEND", b"")


def write_icon(path, images):
    """Images as pairs of a size and its bytes."""
    offset = 6 + 16 * len(images)
    entries = b""
    for size, image in images:
        entries += struct.pack("<BBBBHHII", size % 256, size % 256, 0, 0, 1, 32, len(image), offset)
        offset += len(image)
    with open(path, "wb") as file:
        file.write(struct.pack("<HHH", 0, 1, len(images)) + entries + b"".join(image for _, image in images))


def main():
    write_icon(sys.argv[1], [(size, (as_png if size == 256 else as_bitmap)(draw(size))) for size in SIZES])


if __name__ == "__main__":
    main()
