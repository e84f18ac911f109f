#!/usr/bin/env python3
"""Draws the icons of the pages of the server's settings, src/resources/page_*.ico, as draw_icon.py draws the program's.

    tools/draw_page_icons.py src/resources
"""
import pathlib
import sys

import draw_icon
from draw_icon import BODY, FOLD, FOOT, HEADING, LAMP, LINE, OUTLINE, PAPER, SLOT

SIZES = (20, 25, 30, 40)  # at 100, 125, 150 and 200 %
AMBER = (0xE3, 0xA0, 0x2B)


def bar(colour, left, top, right, bottom, rounding=0):
    return colour, left, top, right, bottom, rounding, 0


def sheet(left, top, right, bottom):
    return [(OUTLINE, left, top, right, bottom, 0, 5), (PAPER, left + 1, top + 1, right - 1, bottom - 1, 0, 5)]


def arrow(colour, left, middle, right):
    """To the right, with a head of 8."""
    head = [bar(colour, right - 8 + i, middle - 8 + i, right - 6 + i, middle + 8 - i) for i in range(7)]
    return [bar(colour, left, middle - 2, right - 7, middle + 2)] + head


def printer(paper):
    return sheet(9, 3, 23, 16) + [
        bar(FOOT, 3, 12, 29, 25, 2), bar(BODY, 3, 12, 29, 22, 2), bar(SLOT, 7, 21, 25, 23),
        bar(OUTLINE, 8, 22, 24, 30), bar(PAPER, 9, 22, 23, 29), bar(LAMP, 24, 15, 27, 18, 1.5)] + paper


# On a grid of 32.
PAGES = {
    "general": [bar(FOOT, 5, 3, 27, 29, 2), bar(BODY, 5, 3, 27, 26, 2), bar(SLOT, 8, 7, 24, 9), bar(SLOT, 8, 12, 24, 14),
                bar(SLOT, 8, 17, 24, 19), bar(LAMP, 20, 21, 24, 25, 2)],
    "sending": sheet(3, 3, 19, 29) + [bar(LINE, 6, 9, 14, 10), bar(LINE, 6, 25, 16, 26)] + arrow(HEADING, 8, 17, 30),
    "archive": [bar(AMBER, 5, 12, 27, 28), bar(OUTLINE, 5, 26, 27, 28), bar(OUTLINE, 3, 5, 29, 13, 1),
                bar(AMBER, 4, 6, 28, 12, 1), bar(PAPER, 12, 16, 20, 20), bar(SLOT, 13, 17, 19, 19)],
    "offpeak": [bar(OUTLINE, 3, 3, 29, 29, 13), bar(PAPER, 5, 5, 27, 27, 11), bar(FOOT, 15, 8, 17, 17),
                bar(FOOT, 15, 15, 23, 17), bar(HEADING, 14, 14, 18, 18, 2)],
    "routing": [bar(OUTLINE, 9, 15, 17, 17), bar(OUTLINE, 16, 6, 18, 26), bar(OUTLINE, 17, 6, 22, 8),
                bar(OUTLINE, 17, 15, 22, 17), bar(OUTLINE, 17, 24, 22, 26), bar(BODY, 3, 11, 12, 21, 2),
                bar(HEADING, 21, 3, 29, 11, 2), bar(HEADING, 21, 12, 29, 20, 2), bar(HEADING, 21, 21, 29, 29, 2)],
    "lcr": [bar(OUTLINE, 8, 8, 24, 10), bar(OUTLINE, 24, 9, 26, 24), bar(BODY, 3, 4, 13, 14, 2),
            bar(HEADING, 20, 4, 30, 14, 2), bar(HEADING, 20, 19, 30, 29, 2), bar(OUTLINE, 2, 17, 16, 31, 7),
            bar(AMBER, 3, 18, 15, 30, 6), bar(FOLD, 8, 21, 10, 27)],
    "printing": printer([bar(LINE, 11, 25, 21, 26)]),
    "layout": sheet(5, 2, 27, 30) + [bar(HEADING, 8, 6, 15, 15), bar(LINE, 17, 8, 24, 15), bar(LINE, 8, 17, 15, 26),
                                     bar(HEADING, 17, 17, 24, 26)],
    "text": sheet(5, 2, 27, 30) + [bar(HEADING, 8, 7, 18, 9), bar(LINE, 8, 12, 24, 13), bar(LINE, 8, 16, 24, 17),
                                   bar(LINE, 8, 20, 24, 21), bar(LINE, 8, 24, 17, 25)],
    "submit": [bar(AMBER, 3, 5, 14, 12, 1), bar(AMBER, 3, 8, 29, 28, 1), bar(FOLD, 6, 11, 26, 14),
               bar(PAPER, 6, 12, 26, 18), bar(OUTLINE, 3, 16, 29, 28, 1), bar(AMBER, 4, 17, 28, 27, 1)],
    "scanner": [bar(OUTLINE, 4, 7, 28, 14, 1), bar(FOLD, 5, 8, 27, 14, 1), bar(LAMP, 4, 15, 28, 17),
                bar(FOOT, 2, 18, 30, 27, 2), bar(BODY, 2, 18, 30, 25, 2), bar(PAPER, 22, 20, 27, 22)],
    "clients": [bar(FOOT, 3, 4, 29, 23, 2), bar(PAPER, 5, 6, 27, 21), bar(HEADING, 7, 8, 18, 10), bar(LINE, 7, 12, 24, 13),
                bar(LINE, 7, 15, 24, 16), bar(OUTLINE, 14, 23, 18, 27), bar(OUTLINE, 9, 26, 23, 28)],
    "numbers": [bar(FOOT, 6, 2, 26, 30, 2), bar(PAPER, 9, 5, 23, 10)] + [
        bar(FOLD, 9 + 5 * column, 13 + 5 * row, 13 + 5 * column, 16 + 5 * row) for row in range(3) for column in range(3)],
    "dialling": [bar(OUTLINE, 2, 6, 30, 14, 4), bar(BODY, 3, 7, 29, 13, 4), bar(OUTLINE, 6, 12, 26, 28, 3),
                 bar(BODY, 7, 13, 25, 27, 3), bar(PAPER, 11, 14, 21, 24, 5), bar(HEADING, 14, 17, 18, 21, 2)],
    "mail": [bar(OUTLINE, 2, 7, 30, 26, 1), bar(PAPER, 3, 8, 29, 25, 1)] + [
        bar(LINE, side, 8 + i, side + 2, 10 + i) for i in range(9) for side in (3 + int(1.4 * i), 27 - int(1.4 * i))] + [
        bar(HEADING, 21, 11, 27, 17)],
}


def draw(shapes, size):
    placed = [draw_icon.snapped(shape, size / 32) for shape in shapes]
    return [[draw_icon.pixel(placed, x, y) for x in range(size)] for y in range(size)]


def main():
    for name, shapes in PAGES.items():
        images = [(size, draw_icon.as_bitmap(draw(shapes, size))) for size in SIZES]
        draw_icon.write_icon(pathlib.Path(sys.argv[1]) / f"page_{name}.ico", images)


if __name__ == "__main__":
    main()
