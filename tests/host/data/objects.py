"""Objects of the application in Python, for as long as the application has them."""
from caehost import *

a = gadget("a")
assert repr(a) == "Gadget object" and type(a) is InterfaceObject
assert a.name == "a" and a.size == 1.0 and {"name", "size", "scaled"} <= set(dir(a))
a.size = 2.5
assert a.size == 2.5 and a.scaled(2.0) == 5.0 and a.scaled(factor=4) == 10.0
assert a == gadget("a") == echo(a) and a != gadget("b") and len({a, gadget("a")}) == 1
assert echo([a])[0].name == "a"


def error_of(action):
    try:
        action()
    except Exception as error:
        return error
    raise AssertionError("nothing was raised")


error = error_of(lambda: a.nmae)
assert type(error) is AttributeError and "no attribute 'nmae'" in error.args[0]
assert error.__notes__ == ["did you mean name?"]
error = error_of(lambda: setattr(a, "name", "x"))
assert type(error) is AttributeError and error.args == ("name is read-only",)
error = error_of(lambda: setattr(a, "size", "x"))
assert type(error) is TypeError and error.args == ("size; found string, expecting float",)
assert type(error_of(lambda: delattr(a, "size"))) is AttributeError
assert type(error_of(lambda: a.scaled("x"))) is TypeError
assert not hasattr(a, "other") and not hasattr(a, "__len__")

scaled = a.scaled
dropGadget("a")
for use in [lambda: a.name, lambda: setattr(a, "size", 1.0), lambda: scaled(1.0), lambda: dir(a),
            lambda: echo(a)]:
    assert type(error_of(use)) is AccessError
assert repr(a) == "<deleted object>" and a == a and hash(a) == hash(a) and a != gadget("a")
