"""A working session on a real part: reads a mesh, judges it, loads it, and draws what comes of it.

    caehost examples/demo/main.py [MESH] [--pictures FOLDER]

MESH is a VTK or STL file; without one it is the bracket beside this script. Run it with
--journal FILE: afterwards `caehost FILE` repeats every command, prints the same report and draws
the same pictures. Units are mm, N, MPa and kg.
"""

import argparse
import os
import sys

import numpy as np
from caehost import *

here = os.path.dirname(os.path.abspath(__file__))
sys.path.insert(0, here)
import elasticity  # noqa: E402
import mesh_reader  # noqa: E402

BRACKET = os.path.join(here, "bracket.vtk")
STEEL = 7.85e-6  # kg/mm^3
YOUNG, POISSON = 210_000.0, 0.3  # of steel; MPa
UNITS = {"length": "mm", "mass": "kg"}
# The bracket, as its drawing has it: bearing bore along x, bolt holes along z.
BORE = {"centre": (40, 70), "radius": 18}  # y, z
BOLTS = {"centres": [(45, 15), (45, 65), (100, 15), (100, 65)], "radius": 5.5}  # x, y
LOAD = (0.0, 3000.0, -6000.0)  # N, of the shaft


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
    blocks = [(globals()[constant], nodes) for constant, nodes, _ in mesh.blocks()]
    return part(name, mesh.points, blocks), mesh


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


def load_bracket(name, mesh):
    """Bolts hold the bracket, a shaft pulls in its bore: displacements and stresses as fields."""
    (_, cells, _), = mesh.solids()
    points = mesh.points
    body = elasticity.Body(points, cells, YOUNG, POISSON)
    held = np.zeros(len(points), bool)
    for centre in BOLTS["centres"]:
        held |= np.isclose(np.hypot(*(points[:, :2] - centre).T), BOLTS["radius"])
    # The shaft presses on the half of the bore that it is pulled to, most in the middle of it.
    outward = points[:, 1:] - BORE["centre"]
    in_bore = np.isclose(np.hypot(*outward.T), BORE["radius"])
    pressed = np.where(in_bore, np.maximum(outward @ LOAD[1:], 0), 0)
    forces = np.outer(pressed / pressed.sum(), LOAD)

    moved = body.solve(np.repeat(held[:, None], 3, axis=1), forces)
    stress = body.stress(moved)
    at_points = body.at_points(elasticity.von_mises(stress))
    field(name, "displacement", moved)
    field(name, "stress", at_points)
    field(name, "stress by cells", elasticity.von_mises(stress), CELLS)
    worst = int(np.argmax(at_points))
    say(f"Under {np.linalg.norm(LOAD):.0f} N in the bore it moves by up to "
        f"{np.linalg.norm(moved, axis=1).max():.3f} mm; the greatest stress (von Mises)")
    say("is %.0f MPa at (%.1f, %.1f, %.1f)." % (at_points[worst], *points[worst]))
    return points[held], points[pressed > 0]


def look_from(direction):
    """Looks at everything from there, z upward (y upward where z points at the viewer)."""
    up = (0, 0, 1) if direction[0] or direction[1] else (0, 1, 0)
    lookAt(direction, (0, 0, 0), up)
    fit()


def draw(name, folder, supports, loads):
    """Views of the part and contours of its fields, as PNG files in a folder: their paths."""
    paths = []

    def picture(file):
        paths.append(os.path.join(folder, file))
        savePicture(paths[-1])

    background("White")
    light(2, latitude=75, longitude=0, diffuse="Grey50", specular="Black")  # more from above
    projection(PARALLEL)
    show(name, FEATURE_EDGES, color="#7088A0")
    if len(supports):
        marker(supports, FILLED_TRIANGLE, 9, "Blue")
        marker(loads, FILLED_CIRCLE, 9, "Red")
        caption("blue: held by the bolts\nred: pressed by the shaft", (98, 4), align=RIGHT)
    look_from((1, -0.7, 0.6))
    picture("1_iso.png")
    look_from((1, 0, 0))
    picture("2_front.png")
    look_from((0, 0, 1))
    picture("3_top.png")
    if len(supports):
        clearMarkers()
        clearLabels()
        contour(name, "displacement", minimum=0, maximum=0.06, smooth=ON, title="displacement [mm]")
        deform(name, "displacement")  # as large as is good to see
        look_from((0, -1, 0))
        picture("4_deformed.png")
        # The few peaks at the bolts, above the range, have a colour of their own.
        deform(name, "displacement", scale=0)
        contour(name, "stress", minimum=0, maximum=60, title="von Mises stress [MPa]")
        look_from((1, -0.7, 0.6))
        picture("5_stress.png")
    return paths


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
    parser = argparse.ArgumentParser(prog="main.py")
    parser.add_argument("mesh", nargs="?", default=BRACKET, help="a VTK or STL file")
    parser.add_argument("--pictures", default="demo_pictures", metavar="FOLDER",
                        help="where they are written; %(default)s by default")
    options = parser.parse_args()
    name, mesh = make_part(options.mesh)
    supports = loads = ()
    if mesh.solids():
        make_groups(name)
        report(name, STEEL, units=UNITS, measure=MEAN_RATIO, worst=3)
        say()
        mounting_check(name)
    if options.mesh == BRACKET:
        say()
        supports, loads = load_bracket(name, mesh)
    show_errors(name)
    try:
        paths = draw(name, options.pictures, supports, loads)
    except RuntimeError as error:  # this host has no room to draw in
        print(f"\n{error}")
        return
    say()
    say("Pictures")
    for path in paths:
        say(f"    {path}")


main()
