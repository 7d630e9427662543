"""Reads meshes: legacy VTK files and STL files, ASCII or binary.

    mesh = read("bracket.vtk")
    mesh.points                  # (n, 3) float64
    mesh.solids()                # [("TET4", nodes (m, 4) int32, cells (m,)), ...]
    mesh.shells()                # [("TRI3", nodes (m, 3) int32, cells (m,)), ("QUAD4", ...)]
    mesh.cell_data["thickness"]  # whatever data the file has; [cells] of it follows a block

VTK: unstructured grids and polydata of versions 1 to 5, with point, cell and field data. STL:
points are merged where they are equal, and cell data "solid" numbers the solids of the file.

A file that cannot be read raises MeshFileError, whose text names the file, the line (or the byte,
in a binary file) and what was expected there. Needs NumPy, and nothing of the host.
"""

from .mesh import Mesh
from .source import MeshFileError, Source
from .stl import is_binary_stl, read_stl
from .vtk import read_vtk

__all__ = ["Mesh", "MeshFileError", "read"]


def read(path):
    """The mesh in the file `path`. OSError where it cannot be opened, else MeshFileError.

    The content decides on the format; the name does where the content is neither.
    """
    with open(path, "rb") as file:
        source = Source(str(path), file.read())
    start = source.data[:80].lstrip().lower()
    if start.startswith(b"# vtk"):
        return read_vtk(source)
    is_stl = start.startswith(b"solid") or source.path.lower().endswith(".stl")
    return read_stl(source) if is_stl or is_binary_stl(source.data) else read_vtk(source)
