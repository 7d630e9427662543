"""Values cross into the library and back without losing their type."""
import array
import copy
import math
import pickle
import struct
import sys

assert "numpy" not in sys.modules and "inspect" not in sys.modules

import caehost
from caehost import OFF, ON, SHELL, SymbolicConstant, describe, echo, numbers


def same(a, b):
    if type(a) is not type(b):
        return False
    if isinstance(a, float):
        return struct.pack("d", a) == struct.pack("d", b)
    if isinstance(a, complex):
        return same(a.real, b.real) and same(a.imag, b.imag)
    if isinstance(a, (tuple, list)):
        return len(a) == len(b) and all(map(same, a, b))
    if isinstance(a, dict):
        return a.keys() == b.keys() and all(same(a[k], b[k]) for k in a)
    return a == b


nan = float("nan")
payload = struct.unpack("d", struct.pack("Q", 0xFFF8_0000_0000_1234))[0]
VALUES = [
    True, False, None, 0, -1, 2**31 - 1, -(2**31), 2**31, 2**32 - 1,
    0.0, -0.0, 0.1, 1e-310, 5e-324, 1.7976931348623157e308, math.inf, -math.inf, nan, payload,
    0.1 + 0.2, 1 / 3, 3.0, 1e22,
    1 + 2j, complex(-0.0, nan), complex(math.inf, -0.0),
    "", "abc", "it's \"quoted\" \\ \n\r\t\0\x7f", "\u00e4\u20ac\U0001f600", "x" * 1000,
    (), (1,), (1, 2.0, "a"), [], [1, [2, (3, [])]], ((), [()]),
    {}, {"a": 1, "b": [1.5]}, {1: "x", -5: {"y": None}}, {-(2**30): 0, 2**30 - 1: 1}, {"": ()},
    ON, [ON, {"mode": OFF}],
]
for value in VALUES:
    assert same(echo(value), value), value
assert list(echo({"b": 1, "a": 2})) == ["a", "b"] and list(echo({3: 0, -1: 0})) == [-1, 3]

for value, text in [(True, "Boolean True"), (3, "int 3"), (2**32 - 1, "int 4294967295"),
                    (0.5, "float 0.5"), (ON, " ON"), ([1], "list (1,)"), ((1,), "tuple (1,)"),
                    ({1: 2}, "dictionary with integer keys {1: 2}"),
                    (array.array("d", [1.5]), "array of double [1.5]")]:
    assert describe(value) == text, describe(value)


def raises(kind, value, *texts):
    try:
        echo(value)
    except kind as error:
        assert all(t in str(error) for t in texts), error
        assert error.__notes__ == ["argument 1 (value)"], error.__notes__
    else:
        raise AssertionError(value)


raises(OverflowError, 2**32, "4294967296", "-2147483648", "4294967295", "floats")
raises(OverflowError, -(2**31) - 1, "-2147483649")
raises(OverflowError, 10**5000, "16610 bits")
raises(OverflowError, {2**31: 0}, "2147483648")
raises(OverflowError, {-(2**31): 0, 0: 1}, "2**31")
raises(ValueError, "a\ud800", "surrogates")
raises(ValueError, {"\udfff": 1}, "surrogates")
for keys in [{1.5: 0}, {1: 0, "a": 1}, {"a": 0, 1: 1}, {True: 0}, {(): 0}, {None: 0}]:
    raises(TypeError, keys, "all int or all str")
endless = []
endless.append(endless)
raises(RecursionError, endless, "500")
loop = {}
loop["self"] = (loop,)
raises(RecursionError, loop)
deep = 1
for _ in range(499):
    deep = [deep]
assert echo(deep) == deep

# Whatever else comes back as the same object.
for value in [object(), b"bytes", bytearray(b"x"), {1, 2}, len, lambda: 0, range(3), type, sys]:
    assert echo(value) is value and echo([value])[0] is value
assert describe(b"x") == "bytes b'x'"

# Symbolic constants.
assert repr(ON) == str(ON) == ON.name == "ON" and f"{[ON]}" == "[ON]"
assert caehost.ON is ON is SymbolicConstant("ON") is echo(ON)
assert ON != OFF and ON != "ON" and len({ON, OFF, SymbolicConstant("ON")}) == 2
for same_one in [pickle.loads(pickle.dumps(ON)), copy.copy(ON), copy.deepcopy([ON])[0]]:
    assert same_one is ON
made = SymbolicConstant("MY_OWN")
assert caehost.MY_OWN is made and type(SHELL) is SymbolicConstant
for bad in ["", "A\0B"]:
    try:
        SymbolicConstant(bad)
    except ValueError:
        pass
    else:
        raise AssertionError
assert not hasattr(caehost, "NEVER_REGISTERED")
try:
    ON.name = "x"
except AttributeError:
    pass

# Without NumPy arrays come back as memoryview.
sys.modules["numpy"] = None
view = echo(array.array("i", [1, -2, 3]))
assert type(view) is memoryview and view.tolist() == [1, -2, 3] and view.format == "i"
view[0] = 5
del sys.modules["numpy"]

import numpy as np

for scalar, plain in [(np.int64(3), 3), (np.uint32(2**32 - 1), 2**32 - 1), (np.int8(-3), -3),
                      (np.float32(0.5), 0.5), (np.float64(0.1), 0.1), (np.float16(0.25), 0.25),
                      (np.bool_(True), True), (np.complex64(1 + 2j), 1 + 2j), (np.str_("a"), "a"),
                      (np.array(3.5), 3.5)]:
    assert same(echo(scalar), plain), scalar
raises(OverflowError, np.int64(2**40), str(2**40))
date = np.datetime64("2020-01-01")
assert echo(date) is date

base = np.arange(24.0).reshape(2, 3, 4)
for values in [base, base.T, base[::-1, :, ::2], base[:, 1], base.astype("f4"), base.astype("i4"),
               np.array([payload, nan, -0.0]), np.zeros((0, 3)), np.zeros(0, "i4"),
               np.frombuffer(b"\0" + np.arange(3.0).tobytes(), "f8", offset=1), np.array([[[1.0]]]),
               memoryview(array.array("d", [1, 2])), base.astype("f4").T]:
    result = echo(values)
    values = np.asarray(values)
    assert type(result) is np.ndarray and result.dtype == values.dtype
    assert result.shape == values.shape and result.tobytes() == values.tobytes()
    assert result.flags.writeable and result.flags.c_contiguous
assert same(echo(np.arange(5)).tolist(), list(range(5))) and echo(np.arange(5)).dtype == np.int32
assert echo((base, [base]))[1][0].tolist() == base.tolist()

# Writing to a result reaches nobody else.
for command in [echo, numbers]:
    kept = command(base)
    kept[0, 0, 0] = 99.0
    assert base[0, 0, 0] == 0.0 and command(base)[0, 0, 0] == 0.0

raises(OverflowError, np.array([0, 2**31]), "2147483648")
for values in [base.astype("u1"), base.astype("?"), base.astype("c16"), base.astype(">f8"),
               np.array([None]), base.astype("u4"), base.astype("f2")]:
    raises(TypeError, values, "int32, int64, float32 or float64")
