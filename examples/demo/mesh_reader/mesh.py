"""A mesh as a file has it, and as blocks of cells of one shape."""

from dataclasses import dataclass, field

import numpy as np

from .polygons import is_convex, triangulate

# VTK's numbers of the cell types that are told apart here.
VERTEX, POLY_VERTEX, LINE, POLY_LINE = 1, 2, 3, 4
TRIANGLE, TRIANGLE_STRIP, POLYGON, PIXEL, QUAD = 5, 6, 7, 8, 9

# Number of nodes of the cell types that have a fixed one.
NODES = {VERTEX: 1, LINE: 2, TRIANGLE: 3, PIXEL: 4, QUAD: 4, 10: 4, 11: 8, 12: 8, 13: 6, 14: 5,
         21: 3, 22: 6, 23: 8, 24: 10, 25: 20, 26: 15, 27: 13}
# Solid cells, their names here, and the order of their nodes: a voxel counts x first, then y.
_SOLIDS = {10: ("TET4", None), 14: ("PYRAMID5", None), 13: ("WEDGE6", None),
           12: ("HEX8", None), 11: ("HEX8", [0, 1, 3, 2, 4, 5, 7, 6])}


@dataclass
class Mesh:
    """Points, and cells of any types; cell i has connectivity[starts[i]:starts[i + 1]]."""

    title: str
    points: np.ndarray        # (n, 3) float64, finite
    types: np.ndarray         # (m,) uint8, VTK's numbers
    starts: np.ndarray        # (m + 1,) int64
    connectivity: np.ndarray  # int32
    point_data: dict = field(default_factory=dict)
    cell_data: dict = field(default_factory=dict)
    file_data: dict = field(default_factory=dict)  # about the whole file

    def nodes_of(self, vtk_type):
        """The cells of one type and their nodes: (cells (k,), nodes (k, nodes of a cell))."""
        cells = np.flatnonzero(self.types == vtk_type)
        size = NODES[vtk_type]
        return cells, self.connectivity[self.starts[cells][:, None] + np.arange(size)]

    def blocks(self):
        """Solids and shells; lines and single points are left out."""
        return self.solids() + self.shells()

    def solids(self):
        """The solid linear cells, by type: [(name, nodes, cells)]."""
        blocks = []
        for vtk_type, (name, order) in _SOLIDS.items():
            cells, nodes = self.nodes_of(vtk_type)
            if len(cells):
                nodes = nodes if order is None else nodes[:, order]
                blocks.append((name, np.ascontiguousarray(nodes), cells))
        return blocks

    def shells(self):
        """The surface cells as TRI3 and QUAD4: [(name, nodes, cells)].

        Quadrangles that are not convex, polygons and strips become triangles; `cells` says which
        cell each came from, so that cell_data[...][cells] are the block's own.
        """
        pixels, pixel_nodes = self.nodes_of(PIXEL)
        quads, quad_nodes = self.nodes_of(QUAD)
        cells = np.concatenate([quads, pixels])
        nodes = np.concatenate([quad_nodes, pixel_nodes[:, [0, 1, 3, 2]]])
        convex = is_convex(self.points, nodes)
        blocks = [("TRI3", *self._triangles(cells[~convex], nodes[~convex])),
                  ("QUAD4", nodes[convex], cells[convex])]
        return [block for block in blocks if len(block[2])]

    def _triangles(self, quads, quad_nodes):
        """Triangles of all kinds, in the order of their cells: (nodes, cells)."""
        cells, nodes = self.nodes_of(TRIANGLE)
        strip_nodes, strip_cells = self._cut_strips()
        polygons = np.flatnonzero(self.types == POLYGON)
        sizes = (self.starts[1:] - self.starts[:-1])[polygons]
        corners = self.connectivity[spread(self.starts[polygons], sizes)]
        owners = np.concatenate([polygons, quads])
        pieces, polygon_of = triangulate(
            self.points, np.concatenate([sizes, np.full(len(quads), 4)]),
            np.concatenate([corners, quad_nodes.ravel()]))
        nodes = np.concatenate([nodes, strip_nodes, pieces])
        cells = np.concatenate([cells, strip_cells, owners[polygon_of]])
        order = np.argsort(cells, kind="stable")
        return nodes[order], cells[order]

    def _cut_strips(self):
        strips = np.flatnonzero(self.types == TRIANGLE_STRIP)
        counts = (self.starts[1:] - self.starts[:-1])[strips] - 2
        at = spread(self.starts[strips], counts)
        nodes = self.connectivity[at[:, None] + np.arange(3)]
        odd = (at - np.repeat(self.starts[strips], counts)) % 2 == 1
        nodes[odd] = nodes[odd][:, [1, 0, 2]]  # every second one runs the other way around
        return nodes, np.repeat(strips, counts)


def spread(starts, counts):
    """start, start + 1, ... count numbers for each start, one after another."""
    ends = np.cumsum(counts)
    total = int(ends[-1]) if len(ends) else 0
    return np.arange(total) + np.repeat(starts - (ends - counts), counts)
