"""Reads legacy VTK files: unstructured grids and polydata.

Source of the format: VTK File Formats, section "Simple Legacy Formats", and what files of version
5.1 have beside it (offsets and connectivity as two arrays).
"""

import re
from urllib.parse import unquote

import numpy as np

from .mesh import (LINE, NODES, POLY_LINE, POLY_VERTEX, POLYGON, QUAD, TRIANGLE, TRIANGLE_STRIP,
                   VERTEX, Mesh)

_TYPES = {"bit": "?", "unsigned_char": "u1", "char": "i1", "signed_char": "i1",
          "unsigned_short": "u2", "short": "i2", "unsigned_int": "u4", "int": "i4",
          "unsigned_long": "u8", "long": "i8", "vtkidtype": "i8", "float": "f4", "double": "f8",
          **{f"vtktype{sign}int{8 * size}": f"{code}{size}"
             for sign, code in (("", "i"), ("u", "u")) for size in (1, 2, 4, 8)}}
# Components of each kind of data; None where the file says how many.
_KINDS = {"SCALARS": 1, "VECTORS": 3, "NORMALS": 3, "TENSORS": 9, "TENSORS6": 6, "GLOBAL_IDS": 1,
          "PEDIGREE_IDS": 1, "EDGE_FLAGS": 1, "TEXTURE_COORDINATES": None}
# Cells of polydata, in the order in which cell data go: the type of cells of 1, 2, 3, 4 nodes, the
# type of those with more, and the least number of nodes.
_POLY_CELLS = {"VERTICES": ([VERTEX], POLY_VERTEX, 1), "LINES": ([0, LINE], POLY_LINE, 2),
               "POLYGONS": ([0, 0, TRIANGLE, QUAD], POLYGON, 3),
               "TRIANGLE_STRIPS": ([], TRIANGLE_STRIP, 3)}


def read_vtk(source):
    return _VtkReader(source).read()


class _Cells:
    """One section of cells: cell i has nodes[starts[i]:starts[i + 1]]."""

    def __init__(self, starts, nodes, at, itemsize, has_counts):
        self.starts, self.nodes = starts, nodes
        self.at, self.itemsize = at, itemsize  # where the numbers stand in the file
        self.has_counts = has_counts           # each cell starts with the number of its nodes

    @property
    def sizes(self):
        return np.diff(self.starts)

    def __len__(self):
        return len(self.starts) - 1


class _VtkReader:
    def __init__(self, source):
        self.source = source
        self.points = self.types = None
        self.cells = {}  # by the name of the section
        self.point_data, self.cell_data, self.file_data = {}, {}, {}
        self.rows = {}   # how many values each of both has, and where it is said

    def read(self):
        source = self.source
        title, is_polydata = self.header()
        data = None  # the dictionary that data go to, and the length of its arrays
        while (line := source.line(None)) is not None:
            words = line.split()
            section = words[0].upper()
            if section == "POINTS":
                self.read_points(words)
            elif section in (_POLY_CELLS if is_polydata else ("CELLS",)):
                self.cells[section] = self.read_cells(words)
            elif section == "CELL_TYPES" and not is_polydata:
                self.types_at = source.start
                self.types = source.numbers(source.count(words, 1, "cell types"), np.dtype(">i4"),
                                            "cell types")
            elif section in ("POINT_DATA", "CELL_DATA"):
                self.rows[section] = source.count(words, 1, "values"), source.start
                self.check_rows(section)
                data = (self.cell_data if section == "CELL_DATA" else self.point_data,
                        self.rows[section][0])
            elif section == "METADATA":
                self.skip_metadata()
            elif section == "FIELD" and data is None:
                self.read_field(words, self.file_data, None)
            elif data is not None:
                self.read_attribute(section, words, *data)
            else:
                known = ", ".join(_POLY_CELLS) if is_polydata else "CELLS, CELL_TYPES"
                source.fail(f"POINTS, {known}, POINT_DATA or CELL_DATA", source.start)
        if self.points is None:
            source.fail("a section POINTS", len(source.data))
        self.check_nodes()
        starts, nodes = self.joined(is_polydata)
        for section in self.rows:  # again: some may have stood before what they are about
            self.check_rows(section, is_all_known=True)
        return Mesh(title, self.points, self.types.astype(np.uint8), starts,
                    nodes.astype(np.int32), self.point_data, self.cell_data, self.file_data)

    def header(self):
        source = self.source
        if not source.line("the header '# vtk DataFile Version'").startswith("# vtk DataFile"):
            source.fail("the header '# vtk DataFile Version'", 0)
        end = source.data.find(b"\n", source.at)  # the title may be blank
        end = len(source.data) if end < 0 else end
        title = source.data[source.at:end].decode("utf-8", "replace").strip()
        source.at = min(end + 1, len(source.data))
        encoding = source.line("ASCII or BINARY").upper()
        if encoding not in ("ASCII", "BINARY"):
            source.fail("ASCII or BINARY", source.start)
        expected = "DATASET UNSTRUCTURED_GRID or DATASET POLYDATA"
        dataset = " ".join(source.line(expected).upper().split())
        if dataset not in expected.split(" or "):
            source.fail(expected, source.start, repr(dataset))
        source.binary = encoding == "BINARY"
        return title, dataset.endswith("POLYDATA")

    def check_rows(self, section, is_all_known=False):
        """Whether there are as many data as points or cells, as far as those are known."""
        about = [self.points] if section == "POINT_DATA" else list(self.cells.values())
        known = sum(len(things) for things in about if things is not None)
        rows, at = self.rows[section]
        if rows != known and (known or is_all_known):
            self.source.fail(f"{section} {known}", at, repr(f"{section} {rows}"))

    def dtype(self, words, index):
        word = words[index].lower() if index < len(words) else ""
        if word not in _TYPES:
            self.source.fail("a numeric type (int, float, double, ...)", self.source.start,
                             repr(word or " ".join(words)))
        return np.dtype(_TYPES[word]).newbyteorder(">")

    def numbers(self, count, dtype, what):
        if dtype.kind != "b":
            return self.source.numbers(count, dtype, what)
        if self.source.binary:  # eight to a byte
            packed = self.source.numbers((count + 7) // 8, np.dtype("u1"), what)
            return np.unpackbits(packed, count=count)
        return self.source.numbers(count, np.dtype("u1"), what)

    # --- Points and cells -------------------------------------------------------------------------

    def read_points(self, words):
        source = self.source
        count = source.count(words, 1, "points")
        dtype = self.dtype(words, 2) if len(words) > 2 else np.dtype(">f4")
        if dtype.kind == "f" and not source.binary:
            dtype = np.dtype("f8")  # all the digits there are
        start = source.at
        values = self.numbers(3 * count, dtype, "coordinates").astype(np.float64)
        for bad in np.flatnonzero(~np.isfinite(values))[:1]:
            source.fail("a finite coordinate", source.place(start, bad, dtype.itemsize),
                        str(values[bad]))
        self.points = values.reshape(-1, 3)

    def read_cells(self, words):
        source = self.source
        first, second = (source.count(words, 1, "cells"), source.count(words, 2, "cell entries"))
        if not self.next_is(b"OFFSETS"):
            return self.read_counted_cells(first, second)
        # Since version 5.1: `first` offsets, one more than cells, and `second` nodes.
        names = source.words("OFFSETS and a type", 2)
        mark = source.at
        starts = source.numbers(first, self.integer(names), "offsets").astype(np.int64)
        names = source.words("CONNECTIVITY and a type", 2)
        if names[0].upper() != "CONNECTIVITY":
            source.fail("CONNECTIVITY", source.start)
        dtype, at = self.integer(names), source.at
        nodes = source.numbers(second, dtype, "node numbers").astype(np.int64)
        if first == second == 0:
            starts = np.zeros(1, np.int64)
        if (len(starts) == 0 or starts[0] != 0 or starts[-1] != second
                or (np.diff(starts) < 0).any()):
            source.fail(f"offsets that rise from 0 to {second}", mark, "others")
        return _Cells(starts, nodes, at, dtype.itemsize, False)

    def integer(self, words):
        dtype = self.dtype(words, 1)
        if dtype.kind not in "iu":
            self.source.fail("an integer type", self.source.start, repr(words[1]))
        return dtype

    def read_counted_cells(self, cells, entries):
        """Cells as lists: the number of nodes, and the nodes."""
        source, at = self.source, self.source.at
        if cells > entries:
            source.fail(f"at least {cells} cell entries", source.start, str(entries))
        values = source.numbers(entries, np.dtype(">i4"), "cell entries").astype(np.int64)
        counts_at = self.counts_at(values, cells)
        sizes = values[counts_at]
        for cell in np.flatnonzero((sizes < 0) | (counts_at + 1 + sizes > entries))[:1]:
            source.fail(f"the number of nodes of cell {cell}", source.place(at, counts_at[cell], 4),
                        repr(str(sizes[cell])))
        used = int((sizes + 1).sum())
        if len(sizes) != cells or used != entries:
            source.fail(f"{cells} cells of {entries} entries in all", at,
                        f"{len(sizes)} cells of {used} entries")
        is_node = np.ones(entries, bool)
        is_node[counts_at] = False
        return _Cells(np.concatenate([[0], np.cumsum(sizes)]), values[is_node], at, 4, True)

    @staticmethod
    def counts_at(values, cells):
        """Where the numbers of nodes stand, up to the first that makes no sense."""
        size = int(values[0]) if len(values) else 0
        if size >= 0 and cells * (size + 1) == len(values) and (values[::size + 1] == size).all():
            return np.arange(0, len(values), size + 1)
        places, place, entries = [], 0, values.tolist()
        while place < len(entries) and len(places) < cells:
            places.append(place)
            if entries[place] < 0:
                break
            place += 1 + entries[place]
        return np.array(places, np.int64)

    def joined(self, is_polydata):
        """All cells, one section after the other, their types set: (starts, nodes)."""
        source = self.source
        if is_polydata:
            order = [(name, self.cells[name]) for name in _POLY_CELLS if name in self.cells]
            self.types = np.concatenate([np.zeros(0, np.int64)] + [
                self.types_of(cells, *_POLY_CELLS[name]) for name, cells in order])
            parts = [cells for _, cells in order]
        else:
            if "CELLS" not in self.cells:
                source.fail("a section CELLS", len(source.data))
            if self.types is None:
                source.fail("a section CELL_TYPES", len(source.data))
            self.check_types(self.cells["CELLS"])
            parts = [self.cells["CELLS"]]
        sizes = np.concatenate([np.zeros(1, np.int64)] + [cells.sizes for cells in parts])
        return np.cumsum(sizes), np.concatenate([np.zeros(0, np.int64)] +
                                                [cells.nodes for cells in parts])

    def types_of(self, cells, by_size, larger, least):
        sizes = cells.sizes
        for cell in np.flatnonzero(sizes < least)[:1]:
            self.source.fail(f"at least {least} nodes of cell {cell}", self.place_of(cells, cell),
                             str(sizes[cell]))
        types = np.array([0, *by_size, larger])
        return types[np.minimum(sizes, len(types) - 1)]

    def check_types(self, cells):
        source, types = self.source, self.types
        if len(types) != len(cells):
            source.fail(f"as many cell types as cells, {len(cells)}", self.types_at,
                        str(len(types)))
        if ((types < 0) | (types > 255)).any():
            source.fail("cell types from 0 to 255", self.types_at, "others")
        least = np.zeros(256, np.int64)
        least[[POLY_VERTEX, POLY_LINE, TRIANGLE_STRIP, POLYGON]] = 1, 2, 3, 3
        exact = np.full(256, -1)
        exact[list(NODES)] = list(NODES.values())
        sizes = cells.sizes
        wrong = (sizes < least[types]) | ((exact[types] >= 0) & (sizes != exact[types]))
        for cell in np.flatnonzero(wrong)[:1]:
            kind = types[cell]
            needed = f"{exact[kind]}" if exact[kind] >= 0 else f"at least {least[kind]}"
            source.fail(f"{needed} nodes of cell {cell}, which is of type {kind}",
                        self.place_of(cells, cell), str(sizes[cell]))

    def place_of(self, cells, cell):
        return self.source.place(cells.at, cells.starts[cell] + cells.has_counts * cell,
                                 cells.itemsize)

    def check_nodes(self):
        last = len(self.points) - 1
        for cells in self.cells.values():
            for entry in np.flatnonzero((cells.nodes < 0) | (cells.nodes > last))[:1]:
                cell = int(np.searchsorted(cells.starts, entry, "right")) - 1
                at = self.source.place(cells.at, entry + cells.has_counts * (cell + 1),
                                       cells.itemsize)
                self.source.fail(f"a node of cell {cell} from 0 to {last}" if last >= 0 else
                                 f"no node of cell {cell}, since there are no points", at,
                                 repr(str(cells.nodes[entry])))

    # --- Data -------------------------------------------------------------------------------------

    def read_attribute(self, section, words, target, rows):
        """One array of point or cell data."""
        source = self.source
        if section == "FIELD":
            self.read_field(words, target, rows)
            return
        if section in ("LOOKUP_TABLE", "COLOR_SCALARS"):
            dtype = np.dtype("u1" if source.binary else ">f4")
            size = 4 if section == "LOOKUP_TABLE" else source.count(words, 2, "components", 1)
            if section == "LOOKUP_TABLE":  # colours, of no use here
                rows, target = source.count(words, 2, "colours"), {}
        elif section in _KINDS:
            size, type_at = _KINDS[section], 2
            if size is None:
                size, type_at = source.count(words, 2, "components", 1), 3
            elif section == "SCALARS" and len(words) > 3:
                size = source.count(words, 3, "components", 1)
            dtype = self.dtype(words, type_at)
            if section == "SCALARS" and self.next_is(b"LOOKUP_TABLE"):  # it may be left out
                source.line(None)
        else:
            source.fail("SCALARS, VECTORS, TENSORS, FIELD or another kind of data", source.start)
        self.put(target, words[1], self.numbers(rows * size, dtype, f"values of {words[1]}"), size)

    def read_field(self, words, target, rows):
        """The arrays of a FIELD; `rows` is how long each must be, None for any length."""
        source = self.source
        for _ in range(source.count(words, 2, "arrays")):
            if self.next_is(b"METADATA"):  # of the array before
                source.line(None)
                self.skip_metadata()
            line = source.words("a name, two numbers and a type", 4)
            size, count = source.count(line, 1, "components"), source.count(line, 2, "rows")
            if rows is not None and (count != rows or size == 0):
                source.fail(f"{rows} rows of {line[0]}", source.start, repr(" ".join(line[1:3])))
            values = self.numbers(size * count, self.dtype(line, 3), f"values of {line[0]}")
            self.put(target, line[0], values, max(size, 1))

    @staticmethod
    def put(target, name, values, size):
        target[unquote(name)] = values if size == 1 else values.reshape(-1, size)

    def next_is(self, word):
        return re.compile(rb"\s*" + word + rb"\b", re.IGNORECASE).match(self.source.data,
                                                                        self.source.at)

    def skip_metadata(self):
        """A blank line ends it."""
        source = self.source
        end = re.compile(rb"\n[ \t\r]*\n").search(source.data, max(source.at - 1, 0))
        source.at = end.end() if end else len(source.data)
