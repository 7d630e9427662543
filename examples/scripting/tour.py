"""What the script guide shows: values, constants, names, errors. Run by caehost."""

import numpy as np
from caehost import *

# A part is a mesh under a name: points and cells as arrays, or as plain nested sequences.
part("plate", [(0, 0, 0), (2, 0, 0), (2, 1, 0), (0, 1, 0),
               (0, 0, 1), (2, 0, 1), (2, 1, 1), (0, 1, 1)], [(0, 1, 2, 3, 4, 5, 6, 7)])

x, y = np.meshgrid([0.0, 1.0, 2.0], [0.0, 1.0])
layers = [np.column_stack([x.ravel(), y.ravel(), np.full(6, z)]) for z in (0.0, 0.5)]
cells = np.array([[0, 1, 4, 3, 6, 7, 10, 9], [1, 2, 5, 4, 7, 8, 11, 10]], dtype=np.int32)
part(name="strip", points=np.vstack(layers), cells=[(HEX8, cells)])

# Arguments go by position or keyword; results are plain Python values.
say(f"volume {volume('plate')}, area {surfaceArea(part='plate')}")
say(f"box {boundingBox('strip')}")
say(f"mass {massProperties('strip', density=2)['mass']}")

# Symbolic constants are objects that print as their name.
say(f"measure {EDGE_RATIO}: {elementQuality('plate', EDGE_RATIO)['least']}")

# A name that is not legal is refused; legalName mends it.
wish = "2nd part v1.5"
try:
    group("strip", wish, cells=[0])
except TarvexNameError as error:
    print(f"{type(error).__name__}: {error}")
    group("strip", legalName(wish), cells=[0])

# An error says what was found and expected, and where; its notes help further.
try:
    part("broken", np.zeros((4, 3)), [(0, 1, 2, 3), (0, 1, 2, "3")])
except TypeError as error:
    print(f"TypeError: {error}")
try:
    report("strip", densty=2)
except TypeError as error:
    print(f"TypeError: {error}")
    print(*error.__notes__, sep="\n")
