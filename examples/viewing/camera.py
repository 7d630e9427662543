"""Moves of the camera, each with its picture. usage: caehost camera.py [FOLDER]"""

import os
import sys

import numpy as np
from caehost import *

folder = sys.argv[1] if len(sys.argv) > 1 else "."
SIZE = {"width": 640, "height": 480}

part("corner", np.array([(0, 0, 0), (3, 0, 0), (0, 2, 0), (0, 0, 1)], float), [(0, 1, 2, 3)])
show("corner", SHADED_EDGES, color="#9FC5E8")


def picture(file):
    savePicture(os.path.join(folder, file), **SIZE)


# Standard views: FRONT, BACK, TOP, BOTTOM, LEFT, RIGHT, ISO. Each fits what is shown.
view(FRONT)
picture("front.png")

# Turn the part about the vertical of the picture, then about its horizontal; farther, and aside.
rotate(30, VERTICAL)
rotate(20, HORIZONTAL)
zoom(-25)
pan(right=5, up=8)
picture("turned.png")

# Keep a view and come back to it.
saveView(USER1)
view(TOP)
view(USER1)

# Place the camera: where it is, what it looks at, what is upward. z is upward here.
lookAt(eye=(8, -6, 5), target=(1, 0.5, 0.3), up=(0, 0, 1))
projection(PARALLEL)
fit()
label("tip", (3, 0, 0), offset=(6, 10))
caption("A corner, seen from the right and above")
picture("placed.png")

# Where a point of the model is in the picture, and a zoom to a rectangle around it.
column, row = pixelOf((3, 0, 0), **SIZE)
zoomTo((column - 68, row - 60), (column + 20, row + 6), **SIZE)
picture("tip.png")
