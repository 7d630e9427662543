"""The demo's mesh reader: what it reads, and what it says of files that it cannot read."""

import pathlib
import struct
import sys
import tempfile
import unittest

ROOT = pathlib.Path(__file__).resolve().parents[2]
sys.path.insert(0, str(ROOT / "examples" / "demo"))
import mesh_reader  # noqa: E402

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


class MeshReader(unittest.TestCase):
    def read(self, content):
        with tempfile.TemporaryDirectory() as folder:
            self.path = f"{folder}/mesh.vtk"
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
             "line 9: expected 8 nodes of cell 1, which is of type 12, found 4"),
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
        ):
            with self.subTest(message), self.assertRaises(mesh_reader.MeshFileError) as caught:
                self.read(content)
            text = str(caught.exception)
            self.assertTrue(text.startswith(f"{self.path}: {message}"), text)

    def test_every_cut_and_every_changed_byte_is_read_or_refused(self):
        for content in (binary(), TEXT.encode()):
            for at in range(len(content)):
                for damaged in (content[:at], content[:at] + b"\xff" + content[at + 1:]):
                    try:
                        self.read(damaged)
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
