"""Errors of the library arrive as Python exceptions, with help in their notes."""
import traceback

import caehost
from caehost import *


def error_of(action, *args, **keywords):
    try:
        action(*args, **keywords)
    except BaseException as error:
        return error
    raise AssertionError("nothing was raised")


for kind, name, message, fields in [
    ("access", caehost.AccessError, "part 'a' no longer exists", {"value": "part 'a'"}),
    ("attribute", AttributeError, "x is read-only", {"errorType": 1, "attribute": "x"}),
    ("font", FontError, "Foo is not a valid font.", {"value": "Foo"}),
    ("gui", GuiAccessError, "no window", {"value": "no window"}),
    ("index", IndexError, "7", {"value": 7}),
    ("key", KeyError, "a key", {"value": "a key"}),
    ("name", NameError, "what", {"value": "what"}),
    ("overflow", OverflowError, "big", {"value": "big"}),
    ("value", ValueError, "bad", {"value": "bad"}),
    ("zero", ZeroDivisionError, "by 0", {"value": "by 0"}),
    ("tarvex", TarvexNameError, "invalid job name", {"error": 2}),
    ("generic", TypeError, "illegal argument type for built-in operation", {}),
    ("text", RuntimeError, "nex_TextException: broken (source:3)", {}),
    ("assert", AssertionError, "nex_AssertException: a == b (source:4)", {}),
    ("std", RuntimeError, "plain", {}),
]:
    error = error_of(fail, kind)
    assert type(error) is name and error.args == (message,), error.args
    assert {k: v for k, v in vars(error).items() if k != "__notes__"} == fields, vars(error)
assert type(error_of(fail, "memory")) is MemoryError
assert type(error_of(fail, "int")) is RuntimeError
assert error_of(late).args == ("late",)
assert ColorError.__module__ == "caehost" and issubclass(RangeError, ValueError)

SIGNATURE = "mesh(count, size, name, points=(), mode=SOLID, flag=True)"
for args, keywords, message, fields, notes in [
    ((1,), {"name": "a"}, "not all required arguments specified; expected 3, got 2",
     {"expecting": 3, "found": 2}, ["missing size: float. edge length [mm]"]),
    ((1, 2.0, "a", (), SOLID, True, 7), {}, "too many arguments; expected 6, got 7",
     {"expecting": 6, "found": 7}, []),
    ((1, 2.0, "a"), {"pionts": ()}, "keyword error on pionts", {"keyword": "pionts"},
     ["did you mean points?"]),
    ((1, 2.0, "a"), {"xyz": ()}, "keyword error on xyz", {"keyword": "xyz"}, []),
    ((1, 2.0, "a"), {"size": 1.0}, "keyword error on size", {"keyword": "size"},
     ["size was already given as argument 2"]),
    (("x", 2.0, "a"), {}, "arg1; found string, expecting int",
     {"argNum": 1, "found": "string", "expecting": "int"}, ["count: int. number of elements"]),
    ((1,), {"name": "a", "size": "b"}, "size; found string, expecting float",
     {"keyword": "size", "found": "string", "expecting": "float"},
     ["size: float. edge length [mm]"]),
    ((1, 2.0, "a"), {"mode": SymbolicConstant("SHEL")},
     "mode; found SHEL, expecting BEAM, SHELL or SOLID", {"keyword": "mode", "found": "SHEL"},
     ["did you mean SHELL?", "mode: SOLID, SHELL or BEAM"]),
    ((1, 2.0, "a", (), "SHELL"), {}, "arg5; found string, expecting BEAM, SHELL or SOLID",
     {"argNum": 5}, ["a constant is written without quotes", "mode: SOLID, SHELL or BEAM"]),
]:
    error = error_of(mesh, *args, **keywords)
    assert type(error) is TypeError and error.args == (message,), error.args
    assert fields.items() <= vars(error).items(), vars(error)
    assert error.__notes__ == notes + [SIGNATURE], error.__notes__

error = error_of(mesh, 1, -2.0, "a")
assert type(error) is RangeError and error.args == ("size must be a Float > 0",), error.args
assert error.keyword == "size" and error.lowerLimitQualifier == 2 and error.keywordType == 2
assert error.__notes__ == ["size: float. edge length [mm]", SIGNATURE]
error = error_of(mesh, 1, size=2**40, name="a")
assert type(error) is OverflowError and error.__notes__ == ["argument size"]

# A Python exception from a callback comes out as it was raised.
problem = KeyError("mine")


def callback(value, extra):
    if value is not None:
        raise problem
    return extra


assert apply(callback) == 7
caught = error_of(apply, callback, 1)
assert caught is problem and not hasattr(caught, "__notes__")
assert [f.name for f in traceback.extract_tb(caught.__traceback__)] == ["error_of", "callback"]
assert type(error_of(apply, lambda value, extra: 2**40)) is OverflowError
assert type(error_of(apply, lambda: 0)) is TypeError
assert type(error_of(apply, lambda value, extra: mesh("x"))) is TypeError
