"""The demo's mesh reader: what it reads, and what it says of files that it cannot read."""

import math
import pathlib
import random
import struct
import sys
import tempfile
import unittest

import numpy as np

ROOT = pathlib.Path(__file__).resolve().parents[2]
sys.path.insert(0, str(ROOT / "examples" / "demo"))
import mesh_reader  # noqa: E402
from mesh_reader.polygons import triangulate  # noqa: E402

# A tetrahedron on a voxel, a triangle between them; every kind of data.
POINTS = [0, 0, 0, 1, 0, 0, 0, 1, 0, 1, 1, 0, 0, 0, 1, 1, 0, 1, 0, 1, 1, 1, 1, 1, .25, .25, 2]
CELLS = [8, 0, 1, 2, 3, 4, 5, 6, 7, 4, 4, 5, 6, 8, 3, 4, 5, 6]
TYPES = [11, 10, 5]
HEAD = "# vtk DataFile Version 3.0\na title\n%s\nDATASET UNSTRUCTURED_GRID\n"
TEXT = (HEAD % "ASCII" + "POINTS 9 float\n" + " ".join(map(str, POINTS)) +
        "\n\nCELLS 3 18\n8 0 1 2 3 4 5 6 7\n4 4 5 6 8\n3 4 5 6\nCELL_TYPES 3\n11\n10\n5\n"
        "POINT_DATA 9\nVECTORS u double\n" + "0 0 1e-3 " * 9 +
        "\nCELL_DATA 3\nSCALARS id int 1\nLOOKUP_TABLE default\n7 8 9\n"
        "FIELD more 2\ntwo 2 3 float\n1 2 3 4 5 6\none 1 3 int\n4 5 6\n")


def binary():
    def big(code, values):
        return struct.pack(f">{len(values)}{code}", *values)
    return b"".join([(HEAD % "BINARY").encode(), b"POINTS 9 float\n", big("f", POINTS),
                     b"\nCELLS 3 18\n", big("i", CELLS), b"\nCELL_TYPES 3\n", big("i", TYPES),
                     b"\nCELL_DATA 3\nSCALARS id int\nLOOKUP_TABLE default\n", big("i", [7, 8, 9])])


def version5():
    return (HEAD % "ASCII" + "POINTS 9 double\n" + " ".join(map(str, POINTS)) +
            "\nMETADATA\nINFORMATION 0\n\nCELLS 4 15\nOFFSETS vtktypeint64\n0 8 12 15\n"
            "CONNECTIVITY vtktypeint64\n0 1 2 3 4 5 6 7 4 5 6 8 4 5 6\nCELL_TYPES 3\n11 10 5\n"
            "CELL_DATA 3\nSCALARS id int\n7 8 9\n")


# Polydata with every kind of cells, an L and a dart among the polygons, and every kind of data.
FLAT = [0, 0, 0, 2, 0, 0, 2, 1, 0, 1, 1, 0, 1, 2, 0, 0, 2, 0, .5, .5, 0]
POLYDATA = (HEAD % "ASCII").replace("UNSTRUCTURED_GRID", "POLYDATA") + (
    "FIELD FieldData 1\nyear 1 1 int\n2026\nPOINTS 7 float\n" + " ".join(map(str, FLAT)) +
    "\nTRIANGLE_STRIPS 1 5\n4 0 1 3 2\nPOLYGONS 3 16\n6 0 1 2 3 4 5\n4 0 1 6 5\n3 0 1 3\n"
    "LINES 1 4\n3 0 1 2\nVERTICES 2 5\n1 0\n2 1 2\n"
    "CELL_DATA 7\nSCALARS id%20of%20cell int\nLOOKUP_TABLE t\n0 1 2 3 4 5 6\n"
    "LOOKUP_TABLE t 2\n0 0 0 1 1 1 1 1\nCOLOR_SCALARS tint 1\n" + ".5 " * 7 +
    "\nNORMALS n float\n" + "0 0 1 " * 7 + "\nMETADATA\nINFORMATION 0\n\n"
    "POINT_DATA 7\nTENSORS s float\n" + "1 2 3 4 5 6 7 8 9\n" * 7 +
    "TEXTURE_COORDINATES uv 2 float\n" + "0 1 " * 7 + "\nSCALARS on bit\n1 0 1 1 0 0 1\n")
# Two solids, which share an edge.
FACETS = [[[0, 0, 0], [1, 0, 0], [0, .1, 0]], [[1, 0, 0], [0, .1, 0], [1, 1, 1]]]
STL = "".join(f"solid {name}\n" + "".join(
    "FACET normal 0 0 1\n outer loop\n" + "".join(" vertex %r %r %r\n" % tuple(c) for c in facet) +
    " endloop\nendfacet\n" for facet in facets) + f"endsolid {name}\n"
    for name, facets in (("the first", FACETS[:1]), ("", FACETS[1:])))


def binary_stl():
    return b"solid that is none".ljust(80) + struct.pack("<i", 2) + b"".join(
        struct.pack("<12fH", 0, 0, 0, *sum(facet, []), 7) for facet in FACETS)


class MeshReader(unittest.TestCase):
    def setUp(self):
        self.folder = tempfile.TemporaryDirectory()
        self.addCleanup(self.folder.cleanup)

    def read(self, content, suffix="vtk"):
        self.path = f"{self.folder.name}/mesh.{suffix}"
        with open(self.path, "wb") as file:
            file.write(content if isinstance(content, bytes) else content.encode())
        return mesh_reader.read(self.path)

    def test_ascii_binary_and_version_5_give_the_same_mesh(self):
        for content in (TEXT, TEXT.replace("\n", "\r\n"), binary(), version5()):
            mesh = self.read(content)
            self.assertEqual(mesh.title, "a title")
            self.assertEqual(mesh.points.ravel().tolist(), POINTS)
            self.assertEqual(mesh.cell_data["id"].tolist(), [7, 8, 9])
            (tet, tets, tet_cells), (hexa, hexes, _) = mesh.solids()
            self.assertEqual((tet, tets.tolist(), tet_cells.tolist()),
                             ("TET4", [[4, 5, 6, 8]], [1]))
            # A voxel's nodes come row by row, a hexahedron's around its base.
            self.assertEqual((hexa, hexes.tolist()), ("HEX8", [[0, 1, 3, 2, 4, 5, 7, 6]]))
            self.assertEqual(mesh.nodes_of(5)[1].tolist(), [[4, 5, 6]])

    def test_point_and_cell_data_are_optional_and_of_any_kind(self):
        mesh = self.read(TEXT)
        self.assertEqual(mesh.point_data["u"].tolist(), [[0, 0, 1e-3]] * 9)
        self.assertEqual(mesh.cell_data["two"].tolist(), [[1, 2], [3, 4], [5, 6]])
        self.assertEqual(mesh.cell_data["one"].tolist(), [4, 5, 6])
        self.assertEqual(self.read(TEXT[:TEXT.index("POINT_DATA")]).cell_data, {})

    def test_polydata_become_triangles_and_their_data_follow(self):
        for content in (POLYDATA, POLYDATA.replace("\n", "\r\n")):
            mesh = self.read(content)
            self.assertEqual(mesh.types.tolist(), [1, 2, 4, 7, 9, 5, 6])
            (tri, nodes, cells), = mesh.shells()
            self.assertEqual(tri, "TRI3")
            self.assertEqual(mesh.cell_data["id of cell"][cells].tolist(), [3] * 4 + [4] * 2 +
                             [5] + [6] * 2)
            a, b, c = (mesh.points[nodes[:, i]] for i in range(3))
            areas = np.cross(b - a, c - a)[:, 2] / 2
            self.assertGreaterEqual(areas[:6].min(), 0)  # an L (3) and a dart (0.5 + 0.5)
            self.assertAlmostEqual(areas[:4].sum(), 3)
            self.assertAlmostEqual(areas[4:6].sum(), 1)
            self.assertEqual(nodes[6:].tolist(), [[0, 1, 3], [0, 1, 3], [3, 1, 2]])
            self.assertEqual(mesh.file_data["year"].tolist(), [2026])
            self.assertEqual(mesh.point_data["s"][6].tolist(), list(range(1, 10)))
            self.assertEqual(mesh.point_data["on"].tolist(), [1, 0, 1, 1, 0, 0, 1])

    def test_stl_points_are_merged_and_solids_numbered(self):
        for content, names in ((STL, ["the first", ""]), (STL.upper(), ["THE FIRST", ""]),
                               (binary_stl(), ["solid that is none"])):
            mesh = self.read(content, "stl")
            np.testing.assert_allclose(mesh.points, [[0, 0, 0], [1, 0, 0], [0, .1, 0], [1, 1, 1]],
                                       rtol=1e-7)
            (tri, nodes, cells), = mesh.blocks()
            self.assertEqual((tri, nodes.tolist()), ("TRI3", [[0, 1, 2], [1, 2, 3]]))
            self.assertEqual(mesh.cell_data["solid"].tolist(), [0, len(names) - 1])
            self.assertEqual(mesh.file_data["solids"], names)

    def test_polygons_are_cut_without_folds(self):
        def ring(count, radius):
            polar = ((radius(i), 2 * math.pi * i / count) for i in range(count))
            return [(r * math.cos(angle), r * math.sin(angle)) for r, angle in polar]
        chance = random.Random(1)
        comb = [(i, i % 2) for i in range(60)] + [(60, -1), (-1, -1)]
        for name, outline in (
                ("circle", ring(1_000_000, lambda i: 1)), ("star", ring(999, lambda i: 1 + i % 2)),
                ("rough", ring(20_000, lambda i: chance.uniform(1, 2))), ("comb", comb),
                ("collinear", [(0, 0), (1, 0), (2, 0), (2, 1), (1, 1), (1, 2), (0, 2), (0, 1)]),
                ("hole, by a bridge", [(0, 0), (4, 0), (4, 4), (0, 4), (0, 0), (1, 1), (1, 3),
                                       (3, 3), (3, 1), (1, 1)])):
            for way in (outline, outline[::-1]):
                flat = np.array(way, float)
                points = flat @ [[1, 2, 0], [0, 1, 3]]  # a plane that leans
                (pieces, owner) = triangulate(points, np.array([len(way)]), np.arange(len(way)))
                a, b, c = (flat[pieces[:, i]] for i in range(3))
                areas = np.cross(b - a, c - a) / 2
                x, y = flat.T
                whole = (x * np.roll(y, -1) - y * np.roll(x, -1)).sum() / 2
                with self.subTest(name):
                    self.assertEqual(len(pieces), len(way) - 2)
                    self.assertAlmostEqual(areas.sum() / whole, 1)
                    self.assertGreaterEqual((areas / whole).min(), -1e-12)
        for _ in range(300):  # crossing edges, equal points: any triangles
            count = chance.randint(3, 30)
            points = np.array([chance.choices(range(4), k=3) for _ in range(count)], float)
            self.assertEqual(len(triangulate(points, np.array([count]), np.arange(count))[0]),
                             count - 2)

    def test_a_malformed_file_is_refused_with_place_and_expectation(self):
        binary_cells = binary().index(b"CELLS") + len("CELLS 3 18\n")
        for content, message in (
            ("", "line 1: expected the header '# vtk DataFile Version', found the end of the file"),
            ("<VTKFile>\n",
             "line 1: expected the header '# vtk DataFile Version', found '<VTKFile>'"),
            (TEXT.replace("ASCII", "TEXT"), "line 3: expected ASCII or BINARY, found 'TEXT'"),
            (TEXT.replace("POINTS 9", "POINTS nine"),
             "line 5: expected the number of points, found 'nine'"),
            (TEXT.replace("9 float", "9 quad"),
             "line 5: expected a numeric type (int, float, double, ...), found 'quad'"),
            (TEXT.replace("0.25 2", "0.25 x"),
             "line 6: expected a number among the coordinates, found 'x'"),
            (TEXT.replace("CELLS 3", "CELLS 999999999999"),
             "line 8: expected at least 999999999999 cell entries, found 18"),
            (TEXT.replace("4 4 5 6 8", "4 4 5 6 8.5"),
             "line 10: expected an integer among the cell entries, found '8.5'"),
            (TEXT.replace("4 4 5 6 8", "9 4 5 6 8"),
             "line 10: expected the number of nodes of cell 1, found '9'"),
            (TEXT.replace("4 4 5 6 8", "4 4 5 6 9"),
             "line 10: expected a node of cell 1 from 0 to 8, found '9'"),
            (TEXT.replace("CELL_TYPES 3\n11\n10", "CELL_TYPES 3\n11\n12"),
             "line 10: expected 8 nodes of cell 1, which is of type 12, found 4"),
            (TEXT.replace("CELL_DATA 3", "CELL_DATA 4"),
             "line 19: expected CELL_DATA 3, found 'CELL_DATA 4'"),
            (TEXT[:TEXT.index("CELL_TYPES")],
             "line 11: expected a section CELL_TYPES, found the end of the file"),
            (TEXT[:TEXT.index("10\n5\n")],
             "line 13: expected 3 cell types, found 1 and the end of the file"),
            (binary()[:binary_cells + 40], f"byte {binary_cells}: expected 18 cell entries "
             "(72 bytes), found 40 bytes"),
            (binary().replace(b"CELLS 3 18", b"CELLS 3 999999999999"),
             f"byte {binary_cells + 10}: expected 999999999999 cell entries (3999999999996 bytes)"),
            (POLYDATA.replace("POLYDATA", "STRUCTURED_GRID"), "line 4: expected DATASET "
             "UNSTRUCTURED_GRID or DATASET POLYDATA, found 'DATASET STRUCTURED_GRID'"),
            (POLYDATA.replace("4 0 1 6 5\n3 0", "4 0 1 6 5\n2 0").replace("S 3 16", "S 3 15")
             .replace("0 1 3\nL", "0 1\nL"),
             "line 15: expected at least 3 nodes of cell 2, found 2"),
            (POLYDATA.replace("L_DATA 7", "L_DATA 8", 1).replace("2 3 4 5 6\n", "2 3 4 5 6 7\n"),
             "line 21: expected CELL_DATA 7, found 'CELL_DATA 8'"),
            (POLYDATA.replace("2 0 0 2", "2 nan 0 2"),
             "line 9: expected a finite coordinate, found nan"),
            (STL.replace(" vertex 1 1 1\n", ""), "line 15: expected vertex, found 'endloop'"),
            (STL.replace("vertex 1 0 0", "vertex 1 0 0x"),
             "line 5: expected a number among the coordinates, found '0x'"),
            (STL.replace("0.1", "nan"), "line 6: expected finite coordinates, found 0.0 nan 0.0"),
            (STL[:-12], "line 17: expected endsolid, found the end of the file"),
            (binary_stl()[:-1], "byte 84: expected 2 facets (100 bytes), found 99 bytes"),
            (binary_stl() + b"x",
             "byte 184: expected the end of the file after 2 facets, found 1 bytes"),
        ):
            is_stl = content[:5] in ("solid", b"solid")
            with self.subTest(message), self.assertRaises(mesh_reader.MeshFileError) as caught:
                self.read(content, "stl" if is_stl else "vtk")
            text = str(caught.exception)
            self.assertTrue(text.startswith(f"{self.path}: {message}"), text)

    def test_every_cut_and_every_changed_byte_is_read_or_refused(self):
        chance = random.Random(1)
        for content, suffix in ((binary(), "vtk"), (TEXT.encode(), "vtk"),
                                (version5().encode(), "vtk"), (POLYDATA.encode(), "vtk"),
                                (STL.encode(), "stl"), (binary_stl(), "stl")):
            for at in range(len(content)):
                for middle in (None, b"\xff", b"9999999", chance.randbytes(1)):
                    damaged = content[:at] + (b"" if middle is None
                                              else middle + content[at + 1:])
                    try:
                        self.read(damaged, suffix).blocks()
                    except mesh_reader.MeshFileError:
                        pass

    def test_the_shipped_mesh(self):
        mesh = mesh_reader.read(ROOT / "examples" / "demo" / "bracket.vtk")
        (name, nodes, cells), = mesh.solids()
        self.assertEqual((name, nodes.shape), ("TET4", (8723, 4)))
        self.assertEqual(len(mesh.points), 2504)
        self.assertEqual(set(nodes.ravel().tolist()), set(range(2504)))


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
