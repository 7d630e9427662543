"""A working session on a real part: reads a mesh, makes a part of it, judges it and reports.

    caehost examples/demo/main.py [MESH.vtk]

Run it with --journal FILE: afterwards `caehost FILE` repeats every command and prints the same
report. Units are mm and kg.
"""

import os
import sys

import numpy as np
from caehost import *

here = os.path.dirname(os.path.abspath(__file__))
sys.path.insert(0, here)
import mesh_reader  # noqa: E402

STEEL = 7.85e-6  # kg/mm^3
UNITS = {"length": "mm", "mass": "kg"}


def make_part(path):
    """A part of the mesh in a file, named like the drawing: as far as that is legal."""
    mesh = mesh_reader.read(path)
    wish = f'4711.2 "{os.path.splitext(os.path.basename(path))[0]}" '
    name = legalName(wish)
    say(f"Mesh file     {os.path.basename(path)}: {len(mesh.points)} points, "
        f"{len(mesh.types)} cells")
    say(f"Name asked    {wish!r}")
    say(f"Name given    {name!r}")
    say()
    # A block of cells for each type, named by its symbolic constant: (TET4, array), ...
    blocks = [(globals()[constant], nodes) for constant, nodes, _ in mesh.solids()]
    return part(name, mesh.points, blocks)


def make_groups(name):
    """Groups by region, by the cells' numbers, and by what a quality check says."""
    low, high = boundingBox(name)
    group(name, "base plate", box=(low, (high[0], high[1], 12)))
    group(name, "bearing seat", box=((0, 12, 42), (20, 68, 98)))
    quality = elementQuality(name, MEAN_RATIO, worst=0)
    poor = np.flatnonzero(np.asarray(quality["values"]) < 0.5)
    group(part=name, name="to be remeshed", cells=poor.astype(np.int32))


def mounting_check(name):
    """Inertia about the middle of the bolt pattern, which the bolts feel."""
    low, high = boundingBox(name)
    bolts = (72.5, (low[1] + high[1]) / 2, 0)
    found = massProperties(name, about=bolts, density=STEEL)
    x, _, z = (c - b for c, b in zip(found["centre"], bolts))
    moment = 9.81 * found["mass"] * -x
    say(f"The centre of mass stands {-x:.1f} mm behind and {z:.1f} mm above the middle of the")
    say(f"bolts; its weight bends them with {moment:.0f} N mm. Inertia about that point:")
    for row in np.asarray(found["inertia"]):
        say("    " + " ".join(f"{value:z10.1f}" for value in row) + "  kg mm^2")


def show_errors(name):
    """Three typical mistakes: what a user reads. Failed commands do not enter the journal."""
    mistakes = (
        ("a misspelt keyword", lambda: massProperties(name, densty=STEEL)),
        ("a wrong value deep inside", lambda: part("tetra", np.eye(4, 3), [(0, 1, 2, "three")])),
        ("a number outside its range", lambda: report(name, density=-STEEL)),
    )
    print("\nThree mistakes, and what the host says of them")
    for what, call in mistakes:
        try:
            call()
        except Exception as error:
            print(f"\n  {what}:\n    {type(error).__name__}: {error}")
            for note in getattr(error, "__notes__", ()):
                print("    " + note.replace("\n", "\n    "))


def main():
    path = sys.argv[1] if len(sys.argv) > 1 else os.path.join(here, "bracket.vtk")
    name = make_part(path)
    make_groups(name)
    report(name, STEEL, units=UNITS, measure=MEAN_RATIO, worst=3)
    say()
    mounting_check(name)
    show_errors(name)


main()
