"""The journal repeats what was done, exactly."""
import os
import struct
import subprocess
import sys
import tempfile
import warnings

import numpy as np

import caehost
from caehost import *

holder = tempfile.TemporaryDirectory()
folder = holder.name
path = os.path.join(folder, "work.py")


def lines():
    with open(path, encoding="utf-8") as file:
        return file.read().split("\n")[2:-1]


def bits(value):
    if isinstance(value, np.ndarray):
        return (value.dtype, value.shape, value.tobytes())
    if isinstance(value, float):
        return struct.pack("d", value)
    if isinstance(value, complex):
        return bits(value.real), bits(value.imag)
    if isinstance(value, (tuple, list)):
        return type(value), [bits(v) for v in value]
    return type(value), value


def from_bits(pattern):
    return struct.unpack("d", struct.pack("Q", pattern))[0]


echo("before the journal")
open_journal(path)
assert lines() == []

# Every literal reads back as the same value, bit for bit.
random = np.random.default_rng(7)
doubles = [from_bits(int(p)) for p in random.integers(0, 2**64, 2000, dtype=np.uint64)]
VALUES = [
    None, True, 0, -(2**31), 2**32 - 1, 0.1 + 0.2, 1e22, 5e-324, -0.0, 3.0, float("nan"),
    float("-inf"), from_bits(0x7FF4000000000001), from_bits(0xFFF8000000000000), doubles,
    complex(-0.0, float("nan")), complex(1e300, -1 / 3),
    "", "it's \"a\" \\ b\n\r\t\0\x1b\x7f\u2028\u00e4\U0001f600", "# not a comment",
    (1,), (), [1, (2.5, ["x"])], {"a'b": {1: [ON]}, "": None}, {-1: 0.5},
    ON, SymbolicConstant("2D-SOLID"), SymbolicConstant("None"), SymbolicConstant("MADE_HERE"), SymbolicConstant("len"),
    np.arange(6.0).reshape(2, 3), np.array([1, -2, 3], "i4"), np.array([0.1, -0.0, np.nan], "f4"),
    random.standard_normal((40, 3)), random.standard_normal(40).astype("f4"),
    random.integers(-(2**31), 2**31, (3, 5, 7)).astype("i4"), np.zeros((0, 3)),
]
for value in VALUES:
    echo(value)
written = lines()
assert len(written) == len(VALUES)
for value, line in zip(VALUES, written):
    assert bits(eval(line)) == bits(value), line
os.truncate(path, 0)

# What enters the journal, and how.
open_journal(path)
mesh(2, 3.0, flag=OFF, name="a")
assert lines() == ["mesh(2, 3.0, flag=OFF, name='a')"]  # there before the command returned
try:
    mesh(2)
except TypeError:
    pass
describe("a query")
a = gadget("a")
gadget("a")
a.size = 0.1
a.scaled(3)
echo([a])
assert lines()[1:] == ["object_1 = gadget('a')", "gadget('a')", "object_1.size = 0.1",
                       "object_1.scaled(3)", "echo([object_1])"], lines()


# Commands that a function called by a command calls: they enter it only where the outer one,
# which would call them again, cannot be repeated.
def function(value, extra):
    return echo(extra)


before = len(lines())
apply(function, 1)
assert lines()[before:] == ["echo(7)", "# Not repeatable: apply(<function>, 1)",
                            "not_repeated('apply', 'an object of type function')"]
close_journal()
echo("after the journal")


def replay(*options):
    return subprocess.run([sys.argv[1], "--as-host", *options, path], capture_output=True, text=True)


# The journal of the replay is the journal.
again = os.path.join(folder, "again.py")
done = replay("--journal", again)
assert done.returncode == 0, done.stderr
assert "apply is not repeated: the journal cannot hold an object of type function" in done.stderr
with open(path) as one, open(again) as two:
    repeated = [l for l in one if "epeat" not in l or "caehost" in l]
    assert repeated == two.readlines()

# A journal that cannot be written says so, and keeps the lines it has.
for bad in ["/", os.path.join(folder, "no", "where")]:
    try:
        open_journal(bad)
    except OSError as error:
        assert error.filename == bad and error.errno
    else:
        raise AssertionError
if os.path.exists("/dev/full"):
    try:
        open_journal("/dev/full")
    except OSError as error:
        assert error.filename == "/dev/full"
    close_journal()
failed = replay("--journal", path)
assert failed.returncode == 2 and "overwrite the script" in failed.stderr
failed = replay("--journal", "/no/such/folder/x.py")
assert failed.returncode == 1 and "/no/such/folder/x.py" in failed.stderr
