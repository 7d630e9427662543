"""What the modelling guide shows of materials. Run by caehost."""

from caehost import *

# A property is a tuple of rows, one value more where they depend on the temperature.
steel = material("steel", "structural steel", density=7.85e-9,
                 elastic=[(210_000, 0.3, 20), (177_000, 0.3, 400), (206_000, 0.3, 100)])
foam = material("foam", density=5e-11, elastic=(40, 0.1))
steel.plastic = [(355, 0), (390, 0.02), (470, 0.15)]
say(f"density {steel.density}, plastic {foam.plastic}")
materialTable(steel)
say()

# Between the temperatures given, values are interpolated.
say(f"at 60 degrees: {materialValue(steel, 'elastic', 60)}")
say(f"at 900 degrees: {materialValue(steel, 'elastic', 900)}")

# A wrong value changes nothing, and the message says which one it is.
for wrong in (7, [(210_000, 0.7)], [(1, 0.3, 20), (2, 0.3, 20)]):
    try:
        steel.elastic = wrong
    except (TypeError, ValueError) as error:
        print(f"{type(error).__name__}: {error}")

# Two boxes in a row, of which the second one is filled with foam.
points = [(x, y, z) for x in (0, 10, 20) for y in (0, 10) for z in (0, 10)]
row = part("row", points, [(0, 4, 6, 2, 1, 5, 7, 3), (4, 8, 10, 6, 5, 9, 11, 7)])
group(row, "filling", cells=[1])
assignMaterial(row, steel)
assignMaterial(row, foam, "filling")
say(f"materials {[(of, found.name) for of, found in row.materials]}")
say(f"mass {massProperties(row)['mass']:.6g}, of steel alone "
    f"{massProperties(row, steel.density[0][0])['mass']:.6g}")

# A material that a part has cannot go; under another name it stays assigned.
foam.name = "filler"
try:
    deleteMaterial(foam)
except ValueError as error:
    print(f"ValueError: {error}")
say(f"materials {[found.name for _, found in row.materials]}")
