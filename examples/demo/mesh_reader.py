"""Reads meshes from legacy VTK files: unstructured grids, ASCII or binary, versions 1 to 5.

    mesh = read("bracket.vtk")
    mesh.points                  # (n, 3) float64
    mesh.solids()                # [("TET4", nodes (m, 4) int32, cells (m,)), ...]
    mesh.cell_data["thickness"]  # whatever data the file has

A file that cannot be read raises MeshFileError, whose text names the file, the line (or the byte,
in a binary file) and what was expected there. Needs NumPy, and nothing of the host.
"""

import re
from dataclasses import dataclass, field

import numpy as np

# Number of nodes of the cell types that have a fixed one.
_NODES = {1: 1, 3: 2, 5: 3, 8: 4, 9: 4, 10: 4, 11: 8, 12: 8, 13: 6, 14: 5,
          21: 3, 22: 6, 23: 8, 24: 10, 25: 20, 26: 15, 27: 13}
# Solid cells, their names here, and the order of their nodes: a voxel counts x first, then y.
_SOLIDS = {10: ("TET4", None), 14: ("PYRAMID5", None), 13: ("WEDGE6", None),
           12: ("HEX8", None), 11: ("HEX8", [0, 1, 3, 2, 4, 5, 7, 6])}
_TYPES = {"bit": None, "unsigned_char": "u1", "char": "i1", "unsigned_short": "u2", "short": "i2",
          "unsigned_int": "u4", "int": "i4", "unsigned_long": "u8", "long": "i8",
          "vtktypeint32": "i4", "vtktypeint64": "i8", "vtkidtype": "i8",
          "float": "f4", "double": "f8"}


class MeshFileError(Exception):
    """A file that is not what it should be: where, and what was expected."""


@dataclass
class Mesh:
    """Points, and cells of any types; cell i has connectivity[starts[i]:starts[i + 1]]."""

    title: str
    points: np.ndarray        # (n, 3) float64
    types: np.ndarray         # (m,) uint8, VTK's numbers
    starts: np.ndarray        # (m + 1,) int64
    connectivity: np.ndarray  # int32
    point_data: dict = field(default_factory=dict)
    cell_data: dict = field(default_factory=dict)

    def nodes_of(self, vtk_type):
        """The cells of one type and their nodes: (cells (k,), nodes (k, nodes of a cell))."""
        cells = np.flatnonzero(self.types == vtk_type)
        size = _NODES[vtk_type]
        return cells, self.connectivity[self.starts[cells][:, None] + np.arange(size)]

    def solids(self):
        """The solid linear cells, by type: [(name, nodes, cells)]. Shells, bars... are left out."""
        blocks = []
        for vtk_type, (name, order) in _SOLIDS.items():
            cells, nodes = self.nodes_of(vtk_type)
            if len(cells):
                nodes = nodes if order is None else nodes[:, order]
                blocks.append((name, np.ascontiguousarray(nodes), cells))
        return blocks


def read(path):
    """The mesh in the file `path`. OSError where it cannot be opened, else MeshFileError."""
    with open(path, "rb") as file:
        return _Reader(str(path), file.read()).read()


class _Reader:
    """Goes through the bytes of one file; `at` is where the next thing is expected."""

    def __init__(self, path, data):
        self.path, self.data, self.at = path, data, 0
        self.binary = False
        self.has_counts = False  # each cell starts with the number of its nodes

    # --- What a file is made of ---------------------------------------------------------------

    def fail(self, expected, at=None, found=None):
        """Raises the error for the place `at`; by default, where the reader is."""
        at = self.at if at is None else at
        if self.binary:
            where = f"byte {at}"
        else:
            at = len(self.data) - len(self.data[at:].lstrip())
            ended = self.data[:at].removesuffix(b"\n") if at == len(self.data) else self.data[:at]
            where = f"line {ended.count(10) + 1}"  # 10: the line feed
        if found is None:
            word = self.data[at:at + 40].split(maxsplit=1)
            found = repr(word[0].decode("ascii", "replace")) if word else "the end of the file"
        raise MeshFileError(f"{self.path}: {where}: expected {expected}, found {found}")

    def line(self, expected):
        """The next line that is not empty, as text; None at the end if nothing is expected."""
        while self.at < len(self.data):
            end = self.data.find(b"\n", self.at)
            end = len(self.data) if end < 0 else end
            start, text = self.at, self.data[self.at:end].strip()
            self.at = min(end + 1, len(self.data))
            if text:
                self.start = start
                return text.decode("latin-1")
        if expected is not None:
            self.fail(expected)
        return None

    def words(self, expected, count):
        """The words of the next line, which has `count` of them or more."""
        words = self.line(expected).split()
        if len(words) < count:
            self.fail(expected, self.start, repr(" ".join(words)))
        return words

    def count(self, word, what):
        if not re.fullmatch(r"\d{1,15}", word):
            self.fail(f"the number of {what}", self.start, repr(word))
        return int(word)

    def dtype(self, word):
        dtype = _TYPES.get(word.lower())
        if dtype is None:
            self.fail("a numeric type (int, float, double, ...)", self.start, repr(word))
        return np.dtype(dtype).newbyteorder(">")

    def numbers(self, count, dtype, what):
        """The next `count` numbers. Takes no memory before it knows that they are there."""
        if self.binary:
            size = count * dtype.itemsize
            if size > len(self.data) - self.at:
                self.fail(f"{count} {what} ({size} bytes)",
                          found=f"{len(self.data) - self.at} bytes")
            values = np.frombuffer(self.data, dtype, count, self.at)
            self.at += size
            return values.astype(dtype.newbyteorder("="))
        words = self.data[self.at:].split(None, count)
        if len(words) < count:
            self.fail(f"{count} {what}", len(self.data), f"{len(words)} and the end of the file")
        start = self.at
        self.at = len(self.data) - (len(words[count]) if len(words) > count else 0)
        try:
            return np.array(words[:count], "S").astype(dtype.newbyteorder("="))
        except (ValueError, OverflowError):
            self.fail_at_word(start, words[:count], dtype, what)

    def fail_at_word(self, start, words, dtype, what):
        for word, match in zip(words, re.finditer(rb"\S+", self.data[start:])):
            try:
                np.array([word], "S").astype(dtype.newbyteorder("="))
            except (ValueError, OverflowError):
                kind = "an integer" if dtype.kind in "iu" else "a number"
                self.fail(f"{kind} among the {what}", start + match.start())

    # --- The file -----------------------------------------------------------------------------

    def read(self):
        if not self.line("the header '# vtk DataFile Version'").startswith("# vtk DataFile"):
            self.fail("the header '# vtk DataFile Version'", 0)
        title_end = self.data.find(b"\n", self.at)
        title = self.data[self.at:max(title_end, self.at)].decode("utf-8", "replace").strip()
        self.at = len(self.data) if title_end < 0 else title_end + 1
        encoding = self.line("ASCII or BINARY").upper()
        if encoding not in ("ASCII", "BINARY"):
            self.fail("ASCII or BINARY", self.start)
        if self.line("DATASET UNSTRUCTURED_GRID").upper().split() != ["DATASET",
                                                                      "UNSTRUCTURED_GRID"]:
            self.fail("DATASET UNSTRUCTURED_GRID", self.start)
        self.binary = encoding == "BINARY"

        mesh = Mesh(title, None, None, None, None)
        data = None  # the dictionary that data go to, and the length of its arrays
        while (line := self.line(None)) is not None:
            words = line.split()
            section = words[0].upper()
            if section == "POINTS":
                mesh.points = self.points(words)
            elif section == "CELLS":
                mesh.starts, mesh.connectivity = self.cells(words)
            elif section == "CELL_TYPES":
                mesh.types = self.numbers(self.rows(words, "cell types"), np.dtype(">i4"),
                                          "cell types")
            elif section in ("POINT_DATA", "CELL_DATA"):
                is_cells = section == "CELL_DATA"
                rows = self.rows(words, "values")
                known = mesh.types if is_cells else mesh.points
                if known is not None and rows != len(known):
                    self.fail(f"{section} {len(known)}", self.start, repr(line))
                data = (mesh.cell_data if is_cells else mesh.point_data, rows)
            elif section == "METADATA":
                self.skip_metadata()
            elif section == "FIELD" and data is None:
                self.field(words, {}, None)  # about the whole file
            elif data is not None:
                self.attribute(section, words, *data)
            else:
                self.fail("POINTS, CELLS, CELL_TYPES, POINT_DATA or CELL_DATA", self.start)
        return self.checked(mesh)

    def rows(self, words, what):
        if len(words) < 2:
            self.fail(f"{words[0]} and the number of {what}", self.start, repr(" ".join(words)))
        return self.count(words[1], what)

    def points(self, words):
        count = self.rows(words, "points")
        dtype = self.dtype(words[2] if len(words) > 2 else "float")
        return self.numbers(3 * count, dtype, "coordinates").astype(np.float64).reshape(-1, 3)

    def cells(self, words):
        first, second = self.rows(words, "cells"), self.count((words + [""])[2], "cell entries")
        mark = self.at
        following = self.data[mark:mark + 40].split(maxsplit=1)
        if following and following[0].upper() == b"OFFSETS":  # since version 5.1
            starts = self.numbers(first, self.dtype(self.words("OFFSETS and a type", 2)[1]),
                                  "offsets").astype(np.int64)
            names = self.words("CONNECTIVITY and a type", 2)
            if names[0].upper() != "CONNECTIVITY":
                self.fail("CONNECTIVITY", self.start)
            nodes = self.numbers(second, self.dtype(names[1]), "node numbers").astype(np.int64)
            if first == 0 or starts[0] != 0 or starts[-1] != second or (np.diff(starts) < 0).any():
                self.fail(f"offsets that rise from 0 to {second}", mark, "others")
        else:
            if first > second:
                self.fail(f"at least {first} cell entries", self.start, str(second))
            entries = self.numbers(second, np.dtype(">i4"), "cell entries").astype(np.int64)
            starts, keep = np.zeros(first + 1, np.int64), np.ones(second, bool)
            place = 0
            for cell in range(first):
                if place >= second or not 0 <= entries[place] < second - place:
                    self.fail_entry(mark, place, f"the number of nodes of cell {cell}")
                keep[place] = False
                starts[cell + 1] = starts[cell] + entries[place]
                place += 1 + int(entries[place])
            if place != second:
                self.fail(f"{first} cells of {second} entries in all", mark, f"{place} entries")
            nodes = entries[keep]
            self.has_counts = True
        self.cells_start = mark
        return starts, nodes

    def fail_entry(self, start, entry, expected):
        """The error at one entry of the CELLS section."""
        if self.binary:
            self.fail(expected, start + 4 * entry, "something else")
        for number, match in enumerate(re.finditer(rb"\S+", self.data[start:])):
            if number == entry:
                self.fail(expected, start + match.start())
        self.fail(expected, len(self.data))

    def attribute(self, section, words, target, rows):
        """One array of point or cell data."""
        if section == "FIELD":
            self.field(words, target, rows)
            return
        if section == "LOOKUP_TABLE":  # colours, of no use here
            self.numbers(4 * self.count((words + ["", ""])[2], "colours"),
                         np.dtype("u1" if self.binary else ">f4"), "colours")
            return
        if section == "COLOR_SCALARS":
            size = self.count((words + ["", ""])[2], "components")
            dtype = np.dtype("u1" if self.binary else ">f4")
        elif section in ("SCALARS", "VECTORS", "NORMALS", "TENSORS", "TEXTURE_COORDINATES"):
            if len(words) < 3:
                self.fail(f"{section}, a name and a type", self.start, repr(" ".join(words)))
            size = {"SCALARS": 1, "TENSORS": 9}.get(section, 3)
            if section == "TEXTURE_COORDINATES":
                size, words = self.count(words[2], "components"), words[:2] + words[3:] + [""]
            elif section == "SCALARS" and len(words) > 3:
                size = self.count(words[3], "components")
            dtype = self.dtype(words[2])
            if section == "SCALARS":
                mark = self.at
                if self.words("LOOKUP_TABLE", 1)[0].upper() != "LOOKUP_TABLE":
                    self.at = mark  # it may be left out
        else:
            self.fail("SCALARS, VECTORS, TENSORS, FIELD or another kind of data", self.start)
        values = self.numbers(rows * size, dtype, f"values of {words[1]}")
        target[words[1]] = values if size == 1 else values.reshape(rows, size)

    def field(self, words, target, rows):
        """The arrays of a FIELD; `rows` is how long each must be, None for any length."""
        for _ in range(self.count((words + ["", ""])[2], "arrays")):
            mark = self.at
            if self.line(None) == "METADATA":  # of the array before
                self.skip_metadata()
            else:
                self.at = mark
            name, size, count, dtype = self.words("a name, two numbers and a type", 4)[:4]
            size, count = self.count(size, "components"), self.count(count, "rows")
            if rows is not None and count != rows:
                self.fail(f"{rows} rows of {name}", self.start, repr(str(count)))
            values = self.numbers(size * count, self.dtype(dtype), f"values of {name}")
            target[name] = values if size == 1 else values.reshape(count, size)

    def skip_metadata(self):
        end = self.data.find(b"\n\n", self.at)
        self.at = len(self.data) if end < 0 else end + 2

    def checked(self, mesh):
        for name, section in (("points", "POINTS"), ("starts", "CELLS"), ("types", "CELL_TYPES")):
            if getattr(mesh, name) is None:
                self.fail(f"a section {section}", len(self.data))
        if len(mesh.types) != len(mesh.starts) - 1:
            self.fail(f"as many cell types as cells, {len(mesh.starts) - 1}", len(self.data),
                      str(len(mesh.types)))
        if ((mesh.types < 0) | (mesh.types > 255)).any():
            self.fail("cell types from 0 to 255", len(self.data), "others")
        sizes = np.diff(mesh.starts)
        bad = np.flatnonzero((mesh.connectivity < 0) | (mesh.connectivity >= len(mesh.points)))
        if len(bad):
            cell = int(np.searchsorted(mesh.starts, bad[0], "right")) - 1
            self.fail_node(mesh, cell, int(bad[0]))
        for vtk_type, size in _NODES.items():
            wrong = np.flatnonzero((mesh.types == vtk_type) & (sizes != size))
            if len(wrong):
                self.fail(f"{size} nodes of cell {wrong[0]}, which is of type {vtk_type}",
                          self.cells_start, str(sizes[wrong[0]]))
        mesh.connectivity = mesh.connectivity.astype(np.int32)
        mesh.types = mesh.types.astype(np.uint8)
        return mesh

    def fail_node(self, mesh, cell, entry):
        expected = f"a node of cell {cell} from 0 to {len(mesh.points) - 1}"
        if self.has_counts and not self.binary:
            self.fail_entry(self.cells_start, entry + cell + 1, expected)
        self.fail(expected, self.cells_start, str(mesh.connectivity[entry]))
