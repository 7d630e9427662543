"""What the modelling guide shows of steps and loads: a bar that is held, heated and pulled."""

from caehost import *

# A bar of two cells, held at one end.
part("bar", [(x, y, z) for x in (0, 1, 2) for y, z in ((0, 0), (1, 0), (1, 1), (0, 1))],
     [(0, 1, 2, 3, 4, 5, 6, 7), (4, 5, 6, 7, 8, 9, 10, 11)])
nodeSet("bar", "wall", box=((0, 0, 0), (0, 1, 1)))
nodeSet("bar", "tip", box=((2, 0, 0), (2, 1, 1)))

# Steps follow each other. A step is an object; commands take it, or its name.
warm = step("warm up", procedure=HEAT, period=600, description="from the stove")
pulled = step("pull")
step("let go", period=0.5)
say(f"{[s.name for s in steps()]}: {pulled.name!r} is behind {pulled.previous!r}")

# A load acts from a step on. What is not given has no value: the wall holds x alone.
wall = support("wall", warm, "bar", "wall", x=0)
temperature("heat", warm, "bar", magnitude=80)
pull = force("pull", pulled, "bar", "tip", x=1500, amplitude="ramp")

# Later steps change it, free it or switch it off.
setLoad(pull, "let go", x=200, z=-50)
setStatus(pull, "let go", "amplitude", FREED)
deactivate("heat", "let go")
stepTable()
loadTable(pull)

# What a load is in a step is there as data too; constants compare.
x = loadState(pull, "let go")["x"]
say(f"x is {x['value']}, {x['state']}; the heat is off: {status('heat', 'let go') == DEACTIVATED}")

# A step that comes in between changes nothing by itself; every command can be undone.
step("hold", previous="pull", period=10)
setLoad("pull", "hold", x=1800)
say(f"{[loadState(pull, s)['x']['value'] for s in steps()]}")
undo()
say(f"{[loadState(pull, s)['x']['value'] for s in steps()]}")

# Loads and supports refer to steps and parts by what those are called, whatever it is.
pulled.name = "draw"
say(f"{pull.name!r} is created in {pull.createdIn!r}")

# Where a load does not act, there is nothing to change.
for mistake in (lambda: setLoad(pull, warm, x=1),
                lambda: setLoad(wall, warm, magnitude=1),
                lambda: deletePart("bar")):
    try:
        mistake()
    except ValueError as error:
        print(f"{type(error).__name__}: {error}")

# A step takes the loads that it creates along.
deleteStep("draw")
say(f"{[load.name for load in loads()]}")
