"""An STL file in a picture, each of its solids in a colour. usage: caehost stl.py [FOLDER]"""

import os
import sys

import numpy as np
from caehost import *

folder = sys.argv[1] if len(sys.argv) > 1 else "."
sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "demo"))
import mesh_reader  # noqa: E402


def write_stl(path, solids):
    """Solids by name, each the corners (n, 3, 3) of its facets."""
    with open(path, "w") as file:
        for name, facets in solids.items():
            file.write(f"solid {name}\n")
            for facet in facets.tolist():
                file.write("facet normal 0 0 0\n outer loop\n")
                file.writelines("  vertex %r %r %r\n" % tuple(corner) for corner in facet)
                file.write(" endloop\nendfacet\n")
            file.write(f"endsolid {name}\n")


# A ring of facets, and a smaller one through it.
u, v = np.meshgrid(np.linspace(0, 2 * np.pi, 49), np.linspace(0, 2 * np.pi, 25), indexing="ij")
ring = np.stack([(3 + np.cos(v)) * np.cos(u), (3 + np.cos(v)) * np.sin(u), np.sin(v)], -1)
ring[-1], ring[:, -1] = ring[0], ring[:, 0]  # closed to the last bit, so that points are merged
quads = np.stack([ring[:-1, :-1], ring[1:, :-1], ring[1:, 1:], ring[:-1, 1:]], -2).reshape(-1, 4, 3)
facets = np.concatenate([quads[:, [0, 1, 2]], quads[:, [0, 2, 3]]])
path = os.path.join(folder, "rings.stl")
write_stl(path, {"large": facets, "small": 0.6 * facets[:, :, [0, 2, 1]][:, ::-1] + [3, 0, 0]})

mesh = mesh_reader.read(path)
blocks = mesh.blocks()
part("rings", mesh.points, [(globals()[shape], nodes) for shape, nodes, _ in blocks])
cells = np.concatenate([cells for _, _, cells in blocks])  # of the file, as the part has them
field("rings", "solid", mesh.cell_data["solid"][cells], CELLS)
say(f"{len(facets) * 2} facets, {len(mesh.points)} points, solids {mesh.file_data['solids']}")

show("rings")
contour("rings", "solid", ramp=("Orange", "Sky blue"), bands=2, legend=OFF)
view(ISO)
savePicture(os.path.join(folder, "rings.png"), width=640, height=480)
