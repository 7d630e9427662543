"""All kinds of markers at several sizes, with their names. usage: caehost markers.py [FOLDER]"""

import os
import sys

from caehost import *

folder = sys.argv[1] if len(sys.argv) > 1 else "."
KINDS = (PLUS, CROSS, ASTERISK, TARGET, HOURGLASS, CIRCLE, FILLED_CIRCLE, SQUARE, FILLED_SQUARE,
         DIAMOND, FILLED_DIAMOND, TRIANGLE, FILLED_TRIANGLE)
SIZES = (5, 7, 9, 13, 19, 27)  # pixels
PICTURE = {"width": 640, "height": 580}

# A unit of the model is a pixel: the window is zoomed to a frame of that size.
background("White")
projection(PARALLEL)
corners = [(0, 0, 0), (PICTURE["width"], PICTURE["height"], 0)]
marker(corners, size=1, color="White")
view(FRONT)
(left, bottom), (right, top) = (pixelOf(corner, **PICTURE) for corner in corners)
zoomTo((left, top), (right, bottom), **PICTURE)

caption("All kinds of markers, 5 to 27 pixels wide", position=(50, 3.5), size=14)
for row, kind in enumerate(KINDS):
    y = PICTURE["height"] - 40 * (row + 1) - 19.5
    label(str(kind), (230, y, 0), size=13, color="Grey30", align=RIGHT)
    for column, size in enumerate(SIZES):
        marker([(290.5 + 60 * column, y, 0)], kind, size, "Blue")
savePicture(os.path.join(folder, "markers.png"), **PICTURE)
