"""Fields in colours, and a deformed shape. usage: caehost contours.py [FOLDER]"""

import os
import sys

import numpy as np
from caehost import *

folder = sys.argv[1] if len(sys.argv) > 1 else "."

# A square plate, and a wave in it: heights at the nodes, displacements, means in the cells.
x, y = np.meshgrid(np.linspace(-1, 1, 41), np.linspace(-1, 1, 41), indexing="ij")
number = np.arange(x.size).reshape(x.shape)
cells = np.stack([number[:-1, :-1], number[1:, :-1], number[1:, 1:], number[:-1, 1:]], -1)
cells = cells.reshape(-1, 4)
part("plate", np.stack([x, y, 0 * x], -1).reshape(-1, 3), [(QUAD4, cells)])
height = (np.cos(7 * np.hypot(x, y)) / (1 + 4 * (x**2 + y**2))).ravel()
field("plate", "height", height)
field("plate", "wave", np.outer(height, (0, 0, 1.0)))
field("plate", "mean", height[cells].mean(axis=1), CELLS)


def picture(file):
    savePicture(os.path.join(folder, file), width=640, height=480)


# Twelve bands between the least and the greatest value, and a legend.
show("plate", FEATURE_EDGES)
view(FRONT)
contour("plate", "height")
picture("bands.png")

# Colours that run into each other, diverging about 0; a range, and the legend's title.
contour("plate", "height", ramp=COOL_WARM, smooth=ON, minimum=-1, maximum=1, title="height [m]")
picture("smooth.png")

# One colour for each cell; colours of one's own, and others for what is out of range.
contour("plate", "mean", ramp=("White", "Yellow", "Red"), bands=6, minimum=0, maximum=0.6)
picture("cells.png")
say(f"the bands end at {[round(end, 3) for end in np.asarray(legend('plate')['breaks']).tolist()]}")

# The plate as the wave bends it, at half its height.
contour("plate", "wave", component=COMPONENT_Z, ramp=COOL_WARM, smooth=ON)
deform("plate", "wave", scale=0.5)
lookAt(eye=(3, -4, 3), target=(0, 0, 0), up=(0, 0, 1))
fit()
picture("deformed.png")
