"""The undo and the files of the modelling guide."""

from caehost import *

# A wall, loaded in one step.
wall = part("wall", [(0, 0, 0), (1, 0, 0), (0, 1, 0), (0, 0, 1)], [(0, 1, 2, 3)])
nodeSet(wall, "top", [3])
wind = step("wind")
gust = force("gust", wind, wall, "top", x=40)
setModelSettings(description="wall in the wind")

# Each command that changes the model is a step to undo, and so is an attribute that is set.
gust.name = "storm"
deleteStep(wind)
say(f"{loads()}, {steps()}")
undo(2)
say(f"{loads()}, created in {gust.createdIn!r}; next to redo: {changeHistory()['redoLabel']!r}")

# The commands of a block are one step, which has a label.
with changes("add a lull"):
    lull = step("lull", period=30)
    setLoad(gust, lull, x=0)
say(f"{undo()!r} is undone: {steps()}, {redo()!r} redone: {steps()}")

# When an exception leaves a block, nothing of it stays.
try:
    with changes("rearrange"):
        deleteLoad(gust)
        deleteStep("calm")
except KeyError as error:
    print(f"KeyError: {error}")
say(f"{loads()}")

# A file holds the whole model. To open one is a step as well.
saveModel("wall.cae")
newModel()
say(f"{parts()}, {modelSettings()['description']!r}")
openModel("wall.cae")
say(f"{parts()}, {modelSettings()['description']!r}, gust {loads() == (gust,)}")
undo(2)
say(f"{parts()}, gust {loads() == (gust,)}")

# What cannot be opened leaves the model as it is.
try:
    openModel("roof.cae")
except OSError as error:
    print(f"{type(error).__name__}: {error}")
