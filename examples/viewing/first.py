"""A first picture: a part, seen from a corner. usage: caehost first.py [FOLDER]"""

import os
import sys

import numpy as np
from caehost import *

folder = sys.argv[1] if len(sys.argv) > 1 else "."

# A bar of 24 x 6 x 6 boxes, twisted by a quarter turn.
x, y, z = np.meshgrid(np.linspace(0, 8, 25), np.linspace(-1, 1, 7), np.linspace(-1, 1, 7),
                      indexing="ij")
turn = np.pi / 16 * x
points = np.stack([x, y * np.cos(turn) - z * np.sin(turn), y * np.sin(turn) + z * np.cos(turn)], -1)
number = np.arange(x.size).reshape(x.shape)
corners = ((0, 0, 0), (1, 0, 0), (1, 1, 0), (0, 1, 0), (0, 0, 1), (1, 0, 1), (1, 1, 1), (0, 1, 1))
cells = [number[i:24 + i, j:6 + j, k:6 + k].ravel() for i, j, k in corners]
part("bar", points.reshape(-1, 3), np.stack(cells, axis=1))

show("bar", SHADED_EDGES, color="Gold")
view(ISO)
savePicture(os.path.join(folder, "bar.png"), width=640, height=480)
