"""Lights and the background. usage: caehost lights.py [FOLDER]"""

import os
import sys

import numpy as np
from caehost import *

folder = sys.argv[1] if len(sys.argv) > 1 else "."

# A ball of quadrangles; at the poles two of their corners are one.
around, down = np.meshgrid(np.linspace(0, 2 * np.pi, 97)[:-1], np.linspace(0, np.pi, 49))
points = np.stack([np.sin(down) * np.sin(around), np.cos(down), np.sin(down) * np.cos(around)], -1)
number = np.arange(around.size).reshape(around.shape)
beside = np.roll(number, -1, axis=1)
cells = np.stack([number[:-1], number[1:], beside[1:], beside[:-1]], -1).reshape(-1, 4)
part("ball", points.reshape(-1, 3), [(QUAD4, cells)])
show("ball", color="White")
view(FRONT)

# Eight lights, numbers 0 to 7, move with the viewer; 0 and 1 are on at the start.
background("Black")
light(1, OFF)
light(0, latitude=30, longitude=40, diffuse="Orange", specular="White")
light(2, latitude=-30, longitude=-60, diffuse="Blue")
savePicture(os.path.join(folder, "lights.png"), width=480, height=480)
