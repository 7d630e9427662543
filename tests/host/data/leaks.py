"""No conversion and no error keeps an object of the interpreter."""
import array
import gc
import sys

import numpy as np

from caehost import *

ROUNDS = 10_000
VALUES = [True, 3, 2**31, 0.5, 1j, "abc", "\u00e4" * 20, None, (1, "x"), [1.5, [None]],
          {"a": 1, "b": (2,)}, {1: "x"}, ON, np.arange(4.0), np.arange(4), np.zeros((2, 3), "f4").T,
          array.array("d", [1.0]), np.float32(1.5), object(), [object()], gadget("a")]


def bad(action, *args, **keywords):
    try:
        action(*args, **keywords)
    except Exception:
        pass
    else:
        raise AssertionError


ACTIONS = [(lambda value=value: echo(value)) for value in VALUES] + [
    lambda: echo(value=object),
    lambda: bad(echo, 2**40),
    lambda: bad(echo, {1: 2, "a": 3}),
    lambda: bad(echo, np.zeros(2, "u1")),
    lambda: bad(mesh, 1, 2.0, naem="x"),
    lambda: bad(mesh, 1, 2.0, 3),
    lambda: bad(fail, "key"),
    lambda: bad(fail, "text"),
    lambda: apply(lambda value, extra: value, "x"),
    lambda: bad(apply, lambda value, extra: 1 / 0),
    lambda: gadget("a").scaled(2.0),
    lambda: bad(getattr, gadget("a"), "nmae"),
    lambda: mesh.__doc__,
    lambda: mesh.parameters,
    lambda: repr(mesh),
]
SENTINELS = [None, True, ON, echo, mesh, type(ON), type(echo), type(gadget("a")), TypeError, object,
             np.ndarray, np.dtype("f8"), np.dtype("i4"), VALUES[-3], VALUES[-2], VALUES[-1], "value"]


def counts():
    gc.collect()
    return (sys.getallocatedblocks(), len(gc.get_objects()),
            [sys.getrefcount(sentinel) for sentinel in SENTINELS])


for number, action in enumerate(ACTIONS):
    for _ in range(10):
        action()
    before = counts()
    for _ in range(ROUNDS):
        action()
    after = counts()
    growth = [after[0] - before[0], after[1] - before[1]]
    growth += [b - a for a, b in zip(before[2], after[2])]
    assert max(growth) < 100, (number, growth)
