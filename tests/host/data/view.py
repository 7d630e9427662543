"""The commands of the viewport, as scripts see them: good input and bad."""
import math
import os
import subprocess
import sys
import tempfile

import numpy as np

import caehost
from caehost import *


def error_of(action, *args, **keywords):
    try:
        action(*args, **keywords)
    except Exception as error:
        return f"{type(error).__name__}: {error}", getattr(error, "__notes__", [])
    return "none", []


points = np.array([(x, y, z) for z in (0, 1) for y in (0, 1) for x in (0, 1)], float)
part("cube", points, [(0, 1, 3, 2, 4, 5, 7, 6)])
part("sheet", points, [(TRI3, np.array([[0, 1, 3]], "i4")),
                       (QUAD4, np.array([[0, 1, 5, 4]], "i4"))])
field("cube", "x", points[:, 0])
field("cube", "u", [[0, 0, float(p)] for p in points[:, 0]])
field("cube", "c", [7], CELLS)

# Everything that a field takes and refuses, and that the view makes of it.
for values, message in [
    (points[:, :2], "ValueError: values is an array of shape [8, 2]; for the 8 points of this part "
     "[8] or [8, 3] was expected"),
    ([1, 2, 3], "ValueError: values is an array of shape [3]; for the 8 points of this part [8] or "
     "[8, 3] was expected"),
    ([1, "b"], "TypeError: arg3(values)[1]; found string, expecting float"),
    ([[1, 2, 3], [4, 5]], "TypeError: arg3; found list, expecting 2D sequence of Doubles"),
    (None, "TypeError: arg3; found None, expecting tuple"),
    (3.5, "TypeError: arg3; found float, expecting tuple"),
]:
    found = error_of(field, "cube", "x", values)[0]
    assert found.startswith(message), (found, message)

contour("cube", "x", ramp=COOL_WARM, bands=2)
assert legend("cube")["title"] == "x" and legend("cube")["breaks"].tolist() == [0, 0.5, 1]
assert len(legend("cube")["colors"]) == 2
contour("cube", "x", ramp=("Red", "#00FF00"), bands=2, minimum=-1, maximum=AUTO)
assert legend("cube")["colors"] == ["#FF0000", "#00FF00"]
assert legend("cube")["minimum"] == -1 and shownParts() == ["cube"]
assert deform("cube", "u") == 0.1 and deform("cube", "u", scale=2) == 2.0

# Errors name what was wrong and what is allowed, with notes that help.
for action, args, keywords, message, note in [
    (show, ("cube",), {"color": "Rde"}, "ColorError: Rde is not a valid color name.",
     "did you mean Red?"),
    (show, ("cube",), {"mode": SymbolicConstant("SHADED_EDGE")}, None,
     "did you mean SHADED_EDGES?"),
    (background, ("grey 70",), {}, "ColorError: grey 70 is not a valid color name.",
     "did you mean Grey70?"),
    (contour, ("cube", "x"), {"ramp": ("Red", "Bleu")},
     "ColorError: Bleu is not a valid color name.", "did you mean Blue?"),
    (contour, ("cube", "x"), {"bands": 10**6},
     "RangeError: bands must be an Integer in the range: 1 <= bands <= 256", None),
    (contour, ("cube", "x"), {"bands": 10**12}, None, "argument bands"),
    (contour, ("cube", "x"), {"maximum": math.inf},
     "RangeError: maximum must be a Float in the range: -1e+38 <= maximum <= 1e+38", None),
    (contour, ("cube", "x"), {"maximum": "top"},
     "TypeError: maximum; found string, expecting float", None),
    (contour, ("cube", "y"), {}, "KeyError: \"no field 'y'\"", None),
    (contour, ("sheet", "x"), {}, "KeyError: \"no field 'x'\"", None),
    (deform, ("cube", "x"), {}, "ValueError: field 'x' does not hold vectors at nodes", None),
    (deform, ("cube", "u"), {"scale": math.nan}, None, None),
    (marker, ([(0, 0, math.nan)],), {},
     "ValueError: points[0] is not a point within 1e18 of the origin", None),
    (marker, (points,), {"kind": SymbolicConstant("CIRCEL")}, None, "did you mean CIRCLE?"),
    (marker, (points,), {"size": -1},
     "RangeError: size must be an Integer in the range: 1 <= size <= 256", None),
    (zoom, (math.inf,), {},
     "RangeError: percent must be a Float in the range: -99 <= percent <= 99", None),
    (rotate, (10, (0, 0, 0)), {}, "ValueError: axis is no direction: its length is 0", None),
    (rotate, (10, (0, 0)), {}, "ValueError: axis has 2 coordinates; 3 were expected", None),
    (view, (USER3,), {}, "ValueError: this view was not saved", None),
    (light, (8,), {}, "RangeError: number must be an Integer in the range: 0 <= number <= 7", None),
    (fit, ("sheet",), {}, "ValueError: part 'sheet' is not shown", None),
    (pixelOf, ((0, 0, 0), 0), {},
     "RangeError: width must be an Integer in the range: 1 <= width <= 1000000", None),
    (savePicture, ("",), {}, "ValueError: path is empty", None),
    (savePicture, ("a\0b",), {}, "ValueError: path holds a zero byte", None),
    (saveModel, ("a\0b",), {}, "ValueError: path holds a zero byte", None),
    (openModel, ("",), {}, "ValueError: path is empty", None),
    (group, ("cube", "a.b"), {}, "TarvexNameError: invalid name",
     "a name has 1 to 80 bytes, no digit at its start and no double quote, full stop or backslash; "
     "legalName makes one"),
    # The first mistake is the one that is named, whatever is read in several ways behind it.
    (caption, (5, (50, 50), 1000), {}, "TypeError: arg1; found int, expecting string", None),
    (contour, ("cube", 5, MAGNITUDE, VIRIDIS, 4, ON, 1.0), {},
     "TypeError: arg2; found int, expecting string", None),
    (part, ("p", "points", [(0, 1, 2)]), {},
     "TypeError: arg2; found string, expecting 2D sequence of Doubles", None),
    (label, ("t", (0, 0)), {}, "ValueError: point has 2 coordinates; 3 were expected", None),
    (label, ("t",), {}, None, 
     "missing point: point. where, as coordinates of the model"),
    (caption, ("t",), {"align": SymbolicConstant("CENTRE")}, None, "did you mean CENTER?"),
]:
    before = camera(), shownParts(), str(legend("cube"))
    found, notes = error_of(action, *args, **keywords)
    assert found != "none" and message in (None, found), (action, found)
    assert note is None or note in notes, (action, notes)
    assert (camera(), shownParts(), str(legend("cube"))) == before, action

# A point of the scene, and where a picture has it.
deform("cube", "u", 0)
view(FRONT)
column, row = pixelOf((0.5, 0.5, 0.5))
assert abs(column - 640) < 0.01 and abs(row - 480) < 0.01
projection(PERSPECTIVE)
lookAt((0.5, 0.5, 9), (0.5, 0.5, 0))
assert pixelOf((0.5, 0.5, 20)) is None

# A session, its journal, and the session of the journal end in the same view.
session = """
part("p", [(0, 0, 0), (1, 0, 0), (0, 1, 0)], [(0, 1, 2)])
field("p", "v", [1.5, float("nan"), 0.1])
contour("p", "v", MAGNITUDE, ramp=["Blue", "Red"], smooth=ON, minimum=0)
show("p", WIREFRAME, edgeWidth=2.5)
view(LEFT); rotate(33.3, (1, 2, 3)); saveView(USER1)
zoom(12.5); pan(3, -4); zoomTo((9, 9), (99, 90))
light(2, latitude=30); background("#102030"); marker([(0, 0, 1)], kind=ASTERISK, onTop=ON)
label("gr\u00f6\u00dfer\\n", (0, 0, 1), 12.5, "Red", CENTER, offset=(1, -2)); caption("", (1, 2))
"""
show_it = "\nprint(camera(), legend('p'), shownParts())\n"
with tempfile.TemporaryDirectory() as folder:
    journal = os.path.join(folder, "journal.py")

    def run(*arguments):
        done = subprocess.run([sys.argv[1], *arguments], capture_output=True, text=True)
        assert done.returncode == 0, done.stderr
        return done.stdout

    first = run("--journal", journal, "-c", "from caehost import *" + session + show_it)
    with open(journal) as file:
        written = file.read()
    assert "camera" not in written and first
    assert run("-c", written + show_it) == first
