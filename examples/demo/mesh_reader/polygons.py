"""Cuts polygons in space into triangles."""

import numpy as np


def is_convex(points, quads):
    """For each of (n, 4) quadrangles: whether each corner turns the same way, or not at all."""
    corners = points[quads]
    with np.errstate(all="ignore"):
        ahead = np.roll(corners, -1, axis=1) - corners
        turns = np.cross(np.roll(ahead, 1, axis=1), ahead)
        normals = turns.sum(axis=1)
        return (np.einsum("nij,nj->ni", turns, normals)
                >= -1e-12 * (normals**2).sum(axis=1)[:, None]).all(axis=1)


def triangulate(points, sizes, nodes):
    """Triangles of polygons, in their order: (nodes (k, 3), number of its polygon (k,)).

    Polygon i has sizes[i] of the nodes, 3 or more, and becomes sizes[i] - 2 triangles that run
    around like it: a fan about its first node where that fan does not fold back, which holds for
    every convex polygon; else by a sweep, in O(n log n). A polygon that crosses itself is cut as
    a fan, too. What a polygon out of its plane is cut into depends on its mean normal.
    """
    counts = sizes - 2
    starts = np.cumsum(sizes) - sizes
    owner = np.repeat(np.arange(len(sizes)), counts)
    first = np.cumsum(counts) - counts
    second = np.arange(len(owner)) - first[owner] + starts[owner] + 1
    triangles = np.stack([nodes[starts[owner]], nodes[second], nodes[second + 1]], axis=1)

    with np.errstate(all="ignore"):  # far too large coordinates make no polygon worth a sweep
        a, b, c = (points[triangles[:, i]] for i in range(3))
        areas = np.cross(b - a, c - a)
        normals = np.stack([np.bincount(owner, areas[:, i], len(sizes)) for i in range(3)], axis=1)
        along = np.einsum("ij,ij->i", areas, normals[owner])
        folds = along < -1e-12 * (normals**2).sum(axis=1)[owner]
        for polygon in np.unique(owner[folds]):
            corners = nodes[starts[polygon]:starts[polygon] + sizes[polygon]]
            flat = _flattened(points[corners], normals[polygon])
            pieces = _swept(flat)
            if pieces is not None:
                triangles[first[polygon]:first[polygon] + counts[polygon]] = corners[pieces]
    return triangles, owner


def _flattened(corners, normal):
    """The corners in a plane, against the clock, longer along x than along y."""
    away = int(np.argmax(np.abs(normal)))
    flat = corners[:, [(away + 1) % 3, (away + 2) % 3]]
    if normal[away] < 0:
        flat = flat * [1, -1]
    if np.ptp(flat[:, 1]) > np.ptp(flat[:, 0]):
        flat = flat[:, ::-1] * [1, -1]
    return flat


class _Interval:
    """What of the sweep line is inside, between a lower and an upper edge.

    To its left is a chain of nodes, from the left end of the lower edge to that of the upper edge,
    of which no triangle can be cut: its nodes are those of a linked list, and `right`, the last
    one that the line met, is the one that a vertex between the edges sees.
    """

    __slots__ = ("low_end", "up_end", "bottom", "top", "right")

    def __init__(self, low_end, up_end, bottom, top, right):
        self.low_end, self.up_end = low_end, up_end  # vertices, the right ends of the edges
        self.bottom, self.top, self.right = bottom, top, right  # nodes


class _Crossing(Exception):
    """The edges are not those of a simple polygon."""


def _swept(flat):
    """Triangles (n - 2, 3) of a simple polygon against the clock; None where it crosses itself.

    A line sweeps over the plane from left to right and cuts off triangles as soon as it can.
    Source: Hertel and Mehlhorn, Fast triangulation of simple polygons, Foundations of Computation
    Theory, LNCS 158 (1983), 207-218.
    """
    try:
        triangles = np.array(_Sweep(flat).run(), np.int64).reshape(-1, 3)
    except _Crossing:
        return None
    if len(triangles) != len(flat) - 2:
        return None
    a, b, c = (flat[triangles[:, i]] for i in range(3))
    areas = np.cross(b - a, c - a)
    whole = np.cross(flat[:-1] - flat[0], flat[1:] - flat[0]).sum()
    ok = areas.min() >= -1e-12 * whole and abs(areas.sum() - whole) <= 1e-9 * whole
    return triangles if ok else None


class _Sweep:
    def __init__(self, flat):
        count = len(flat)
        self.x, self.y = flat[:, 0].tolist(), flat[:, 1].tolist()
        self.order = np.lexsort((flat[:, 1], flat[:, 0])).tolist()
        self.lower_of = [None] * count  # interval whose lower edge ends at a vertex
        self.upper_of = [None] * count
        self.status = []                # the intervals, from below
        self.vertex, self.below, self.above = [], [], []  # of each node; -1: none
        self.triangles = []             # vertices, three and three

    def turn(self, a, b, c):
        """Twice the area of a triangle, positive against the clock."""
        x, y = self.x, self.y
        return (x[b] - x[a]) * (y[c] - y[a]) - (x[c] - x[a]) * (y[b] - y[a])

    def run(self):
        count = len(self.x)
        rank = [0] * count
        for place, vertex in enumerate(self.order):
            rank[vertex] = place
        for v in self.order:
            before, after = v - 1 if v else count - 1, v + 1 if v + 1 < count else 0
            if rank[before] < rank[v]:
                if rank[after] < rank[v]:
                    self.end(v)
                else:
                    self.put_bottom(self.above_edge(v), v, after)
            elif rank[after] < rank[v]:
                self.put_top(self.below_edge(v), v, before)
            else:
                self.start(v, before, after)
        return self.triangles

    def above_edge(self, v):
        """The interval whose lower edge ends at v."""
        interval = self.lower_of[v]
        if interval is None or interval.low_end != v:
            raise _Crossing
        return interval

    def below_edge(self, v):
        interval = self.upper_of[v]
        if interval is None or interval.up_end != v:
            raise _Crossing
        return interval

    # --- Chains ---------------------------------------------------------------------------------

    def node(self, vertex, below=-1, above=-1):
        self.vertex.append(vertex)
        self.below.append(below)
        self.above.append(above)
        node = len(self.vertex) - 1
        if below >= 0:
            self.above[below] = node
        if above >= 0:
            self.below[above] = node
        return node

    def put_bottom(self, interval, v, low_end):
        """The lower edge has come to v; from there it goes on to low_end."""
        node, vertex, above = interval.bottom, self.vertex, self.above
        while above[node] >= 0 and self.turn(vertex[node], v, vertex[above[node]]) > 0:
            self.triangles += (vertex[node], v, vertex[above[node]])
            node = above[node]
        interval.bottom = interval.right = self.node(v, above=node)
        interval.low_end = low_end
        self.lower_of[low_end] = interval

    def put_top(self, interval, v, up_end):
        node, vertex, below = interval.top, self.vertex, self.below
        while below[node] >= 0 and self.turn(vertex[below[node]], v, vertex[node]) > 0:
            self.triangles += (vertex[below[node]], v, vertex[node])
            node = below[node]
        interval.top = interval.right = self.node(v, below=node)
        interval.up_end = up_end
        self.upper_of[up_end] = interval

    # --- Vertices where the number of intervals changes -------------------------------------------

    def place(self, v):
        """The number of intervals whose lower edge runs below v."""
        status, vertex, x, y = self.status, self.vertex, self.x, self.y
        x_v, y_v = x[v], y[v]
        low, high = 0, len(status)
        while low < high:
            middle = (low + high) // 2
            interval = status[middle]
            a, b = vertex[interval.bottom], interval.low_end
            # turn(a, b, v) > 0, written out: half of the sweep's time is spent here.
            if (x[b] - x[a]) * (y_v - y[a]) > (x_v - x[a]) * (y[b] - y[a]):
                low = middle + 1
            else:
                high = middle
        return low

    def remove(self, interval, v):
        place = self.place(v)
        if place == len(self.status) or self.status[place] is not interval:
            place = self.status.index(interval)
        del self.status[place]

    def start(self, v, before, after):
        place = self.place(v)
        if self.turn(before, v, after) > 0:
            node = self.node(v)
            new = _Interval(after, before, node, node, node)
            self.status.insert(place, new)
            self.lower_of[after] = self.upper_of[before] = new
            return
        # The vertex stands inside an interval and sees the chain's right node: both are cut there.
        if place == 0:
            raise _Crossing
        lower = self.status[place - 1]
        right = lower.right
        twin = self.node(self.vertex[right], above=self.above[right])
        self.above[right] = -1
        top = twin if lower.top == right else lower.top
        upper = _Interval(after, lower.up_end, twin, top, twin)
        self.status.insert(place, upper)
        self.upper_of[upper.up_end] = upper
        lower.top = right
        self.put_top(lower, v, before)
        self.put_bottom(upper, v, after)

    def end(self, v):
        upper, lower = self.above_edge(v), self.below_edge(v)
        self.remove(upper, v)
        if upper is lower:
            node = upper.bottom
            while self.above[node] >= 0:
                above = self.above[node]
                self.triangles += (self.vertex[node], v, self.vertex[above])
                node = above
        else:
            up_end = upper.up_end
            self.put_bottom(upper, v, v)
            self.put_top(lower, v, up_end)
            # Both chains now end in v: one node for both.
            following = self.above[upper.bottom]
            self.above[lower.top], self.below[following] = following, lower.top
            lower.top = upper.top
        upper.low_end = upper.up_end = -1
