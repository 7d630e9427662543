"""Reads mementos as docs/memento.md tells, with a CBOR decoder that knows nothing of us."""

import io
import pathlib
import sys

import cbor2  # on Debian: apt-get install python3-cbor2

sys.path.insert(0, str(pathlib.Path(__file__).parents[1] / "support"))
from crc32c import crc32c  # noqa: E402

DATA = pathlib.Path(__file__).parent / "data"


def read(path):
    """The roots of a memento; objects as dictionaries of their fields with "class" added."""
    data = path.read_bytes()
    stream = io.BytesIO(data)
    decoder = cbor2.CBORDecoder(stream)
    header = decoder.decode()
    if isinstance(header, cbor2.CBORTag):
        header = header.value
    assert header == {"format": "CaeUtils memento", "version": 1}, header
    classes = decoder.decode()
    roots = decoder.decode()
    end = stream.tell()
    assert decoder.decode() == crc32c(data[:end]).to_bytes(4, "big")
    assert stream.read() == b""

    seen = {}

    def fields_of(index):
        name, version, base, own = classes[index]
        assert isinstance(name, str) and version >= 0 and (base is None or base < index)
        return (fields_of(base) if base is not None else []) + own

    def levels_of(index):
        base = classes[index][2]
        return 1 + (levels_of(base) if base is not None else 0)

    def value(item):
        if isinstance(item, cbor2.CBORTag) and item.tag == 39:
            return ("reference", item.value)
        if isinstance(item, cbor2.CBORTag):
            widths = {78: ("i", 4), 85: ("f", 4), 86: ("d", 8)}
            kind, width = widths[item.tag]
            assert len(item.value) % width == 0
            return list(memoryview(item.value).cast(kind))  # little-endian, as machines here are
        if not isinstance(item, list):
            return item
        if item[0] is None:
            return [value(element) for element in item[1:]]
        if id(item) not in seen:
            seen[id(item)] = read_object = {"class": classes[item[0]][0]}
            names = fields_of(item[0])
            levels = levels_of(item[0])
            assert len(item) == 1 + levels + len(names), item
            read_object["identities"] = item[1:1 + levels]
            read_object.update(zip(names, map(value, item[1 + levels:])))
        return seen[id(item)]

    return {name: value(item) for name, item in roots.items()}


def sample(name):
    return read(DATA / f"{name}.memento")["sample"]


for path in sorted(DATA.glob("*.memento")):
    stored = read(path)["sample"]
    assert path.stem.startswith(stored["class"]), (path.stem, stored)

number = sample("omu_PrimNumber_double")
assert number == {"class": "omu_PrimNumber", "identities": [0, 0], "type": "f", "value": 0.1,
                  "uvalue": 0, "dataType": 4}, number
assert sample("omu_PrimString")["string"] == "m\u00e4rz"
assert sample("omu_PrimString_bytes")["string"] == b"\xe4"
array = sample("omu_PrimArray")
assert (array["dims"], array["intData"], array["doubleData"]) == ([2, 2], [1, -2, 3, 4], [])
assert sample("omu_PrimArray_float")["floatData"] == [0.5, -0.0]
words = sample("omu_PrimStrDictionary")["dict"]
assert words[0::2] == ["a", "b", "c"] and words[1]["string"] == "shared"
assert words[1] is words[3], "a shared value comes back shared"
assert sample("g3d_Vector")["y"] == -2.0
assert sample("omu_PrimException")["m_Exception"]["m_Value"] == "Part-1"
assert sample("mdl_PropInt")["identities"] == [77] and sample("mdl_PropInt")["state"] == 2
model = sample("test_Member")
plate, bolt = model["members"]
head = bolt["members"][0]
assert [member["name"] for member in (plate, bolt, head)] == ["plate", "bolt", "head"]
# By number, in the order in which they begin: model 0, plate 1, its value 2, bolt 3, head 4.
assert [member["other"] for member in (model, plate, bolt, head)] == [
    None, ("reference", 4), ("reference", 1), ("reference", 0)]
assert plate["value"] is bolt["value"] is model["steps"][1]
assert (plate["weights"], plate["places"]) == ([0.5], [1e300, -0.0])
assert model["sets"][0] == "all" and model["sets"][1]["other"] == ("reference", 3)
print("read", len(list(DATA.glob("*.memento"))), "mementos")
