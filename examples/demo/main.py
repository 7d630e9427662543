"""A working session on a real part: reads a mesh, judges it, loads it step by step, saves and reopens
the model, and draws what comes of it.

    caehost examples/demo/main.py [MESH] [--pictures FOLDER] [--model FILE]

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
# The shaft presses on the half of the bore that it is pulled to, most in the middle of it: the
# bands are the cosines of the angle off that middle.
BANDS = {"middle": (0.8, 1.01), "sides": (0.4, 0.8), "rims": (1e-9, 0.4)}


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
    return part(name, mesh.points, blocks).name, mesh


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


def load_bracket(name, points):
    """Material, supports and loads of the bracket, through the steps of its service."""
    with changes("node sets"):
        held = np.zeros(len(points), bool)
        for centre in BOLTS["centres"]:
            held |= np.isclose(np.hypot(*(points[:, :2] - centre).T), BOLTS["radius"])
        nodeSet(name, "bolt holes", np.flatnonzero(held).astype(np.int32))
        outward = points[:, 1:] - BORE["centre"]
        distance = np.hypot(*outward.T)
        cosine = np.where(np.isclose(distance, BORE["radius"]),
                          outward @ LOAD[1:] / np.hypot(*LOAD[1:]) / BORE["radius"], 0)
        for band, (low, high) in BANDS.items():
            members = np.flatnonzero((cosine >= low) & (cosine < high)).astype(np.int32)
            nodeSet(name, f"bore {band}", members)
    steel = material("steel", "structural steel", density=STEEL, elastic=(YOUNG, POISSON))
    assignMaterial(name, steel)

    mounted = step("mounted", description="held by its bolts")
    running = step("running", description="the shaft pulls")
    overload = step("overload", description="half as much again")
    stopped = step("stopped", description="the shaft is taken out")
    support("bolts", mounted, name, "bolt holes", x=0, y=0, z=0)
    total = np.maximum(cosine, 0).sum()
    for band, (low, high) in BANDS.items():
        chosen = cosine[(cosine >= low) & (cosine < high)]
        x, y, z = chosen.mean() / total * np.array(LOAD)  # at each node
        shaft = force(f"shaft {band}", running, name, f"bore {band}", y=y, z=z)
        setLoad(shaft, overload, y=1.5 * y, z=1.5 * z)
        deactivate(shaft, stopped)
    say("Loads and supports through the steps")
    stepTable()
    say()
    loadTable("shaft middle")


def keep(path):
    """Saves the model, spoils it, takes that back, and opens what was saved."""
    saveModel(path)
    deleteStep("overload")
    say(f"Saved the model. Deleted step 'overload': {len(steps())} steps are left.")
    say(f"Undo of {undo()}: {len(steps())} steps.")
    openModel(path)
    say(f"Opened what was saved: {len(parts())} part, {len(steps())} steps, {len(loads())} loads.")


def solve(name, mesh, now):
    """Displacements and stresses in a step, as fields of the part: what the model says acts there."""
    (_, cells, _), = mesh.solids()
    points = mesh.points
    held, moved = np.zeros((len(points), 3), bool), np.zeros((len(points), 3))
    forces = np.zeros((len(points), 3))
    for load in loads():
        if status(load, now) not in (CREATED, PROPAGATED, MODIFIED):
            continue
        nodes = nodesOf(name, load.region)
        for component, state in loadState(load, now).items():
            if component != "amplitude" and state["state"] in (SET, UNCHANGED):
                axis = "xyz".index(component)
                held[nodes, axis] |= load.kind == SUPPORT
                (moved if load.kind == SUPPORT else forces)[nodes, axis] += state["value"]
    body = elasticity.Body(points, cells, *materialValue("steel", "elastic", 20))
    displacement = body.solve(held, forces, moved)
    stress = elasticity.von_mises(body.stress(displacement))
    at_points = body.at_points(stress)
    field(name, "displacement", displacement)
    field(name, "stress", at_points)
    field(name, "stress by cells", stress, CELLS)
    worst = int(np.argmax(at_points))
    say(f"Step '{now}': {np.linalg.norm(forces.sum(axis=0)):.0f} N in the bore move it by up to "
        f"{np.linalg.norm(displacement, axis=1).max():.3f} mm; the")
    say("greatest stress (von Mises) is %.0f MPa at (%.1f, %.1f, %.1f)."
        % (at_points[worst], *points[worst]))


def look_from(direction):
    """Looks at everything from there, z upward (y upward where z points at the viewer)."""
    up = (0, 0, 1) if direction[0] or direction[1] else (0, 1, 0)
    lookAt(direction, (0, 0, 0), up)
    fit()


def draw(name, folder):
    """Views of the part and contours of its fields, as PNG files in a folder: their paths."""
    paths = []

    def picture(file):
        paths.append(os.path.join(folder, file))
        savePicture(paths[-1])

    background("White")
    light(2, latitude=75, longitude=0, diffuse="Grey50", specular="Black")  # more from above
    projection(PARALLEL)
    show(name, FEATURE_EDGES, color="#7088A0")
    if loads():
        markLoads("running")
    look_from((1, -0.7, 0.6))
    picture("1_iso.png")
    look_from((1, 0, 0))
    picture("2_front.png")
    look_from((0, 0, 1))
    picture("3_top.png")
    if loads():
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
    parser.add_argument("--model", default="demo_model.cae", metavar="FILE",
                        help="where the model is saved; %(default)s by default")
    options = parser.parse_args()
    name, mesh = make_part(options.mesh)
    if mesh.solids():
        make_groups(name)
        report(name, STEEL, units=UNITS, measure=MEAN_RATIO, worst=3)
        say()
        mounting_check(name)
    if options.mesh == BRACKET:
        say()
        load_bracket(name, mesh.points)
        say()
        keep(options.model)
        say()
        solve(name, mesh, "running")
    show_errors(name)
    try:
        paths = draw(name, options.pictures)
    except RuntimeError as error:  # this host has no room to draw in
        print(f"\n{error}")
        return
    say()
    say("Pictures")
    for path in paths:
        say(f"    {path}")


main()
