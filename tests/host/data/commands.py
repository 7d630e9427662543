"""What is shown of a command follows from its declaration."""
import contextlib
import copy
import inspect
import io
import pickle
import pydoc
import sys

import caehost
from caehost import *

signature = inspect.signature(mesh)
assert str(signature) == "(count, size, name, points=(), mode=SOLID, flag=True)"
parameters = signature.parameters
assert parameters["count"].default is inspect.Parameter.empty
assert parameters["mode"].default is SOLID and parameters["flag"].default is True
assert parameters["points"].kind is inspect.Parameter.POSITIONAL_OR_KEYWORD
assert signature.bind(1, 2.0, name="a").arguments["name"] == "a"
assert inspect.signature(mesh) is signature

assert callable(mesh) and type(mesh) is caehost.Command and type(mesh).__name__ == "Command"
assert (mesh.__name__, mesh.__qualname__, mesh.__module__) == ("mesh", "mesh", "caehost")
assert repr(mesh) == "<command mesh(count, size, name, points=(), mode=SOLID, flag=True)>"
assert mesh.__doc__.startswith("Makes a mesh.\n\nOf elements.\n\nParameters:\n    count: int. number")
assert "    flag: bool (default True)" in mesh.__doc__
text = pydoc.render_doc(mesh, renderer=pydoc.plaintext)
assert "mesh(count, size, name, points=(), mode=SOLID, flag=True)\n    Makes a mesh." in text, text
assert pickle.loads(pickle.dumps(mesh)) is mesh and copy.deepcopy(mesh) is mesh


class Holder:
    command = echo


assert Holder().command(3) == 3 and Holder.command(4) == 4

assert mesh(2, 3, "a") == 6.5 and mesh(2, 3.0, name="a", flag=OFF) == 6.0
assert mesh(*[2], **{"size": 3.0, "name": "a", "points": (1, 2)}) == 8.5
assert mesh(2, size=3.0, name="ab", mode=BEAM, flag=0) == 6.0
long_name = "k" * 100
try:
    mesh(**{long_name: 1})
except TypeError as error:
    assert error.keyword == long_name
else:
    raise AssertionError

# Completion.
support = sys.modules["_caehost_support"]
names = vars(caehost)
for line, text, expected in [
    ("mesh(co", "co", ["count="]),
    ("mesh(1, na", "na", ["name="]),
    ("x = mesh((1, 2), size=max(3, 4), fl", "fl", ["flag="]),
    ("mesh(1, mode=S", "S", ["SOLID", "SHELL"]),
    ("mesh(name='x(', mode=", "", ["SOLID", "SHELL", "BEAM"]),
    ("print(co", "co", []),
    ("mesh(1).x", "", []),
]:
    assert support.argument_matches(line, text, names) == expected, line
