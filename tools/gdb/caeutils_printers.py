"""gdb pretty-printers for the container templates and holders (src/cow).

In gdb: `source tools/gdb/caeutils_printers.py`. Then `print list` shows the elements of lists,
arrays, maps and trees, and what a holder holds, with the number of sharers.
"""

import gdb
import gdb.printing


def elements_of(block, element, header):
    """Pointer to the first element of a cow_1DArrayBlock."""
    return (block.cast(gdb.lookup_type("char").pointer()) + header).cast(element.pointer())


class ArrayPrinter:
    """cow_1DArray: the elements [start, start + length); untouched blocks read as null blocks."""

    def __init__(self, value, length=None):
        self.value = value
        self.element = value.type.strip_typedefs().template_argument(0)
        self.start = int(value["_start"])
        self.length = int(value["_end"]) - self.start if length is None else length

    def to_string(self):
        count = self.value["_tableCount"]
        sharers = int(count.dereference()) if count else 1
        return (f"cow_1DArray of {self.length}, {int(self.value['_slots'])} slots, "
                f"shift {int(self.value['_shift'])}, {sharers} sharing")

    def children(self):
        shift = int(self.value["_shift"])
        align = self.element.alignof
        header = (4 + align - 1) // align * align
        for index in range(self.length):
            at = self.start + index
            block = self.value["_table"][at >> shift]
            if block:
                first = elements_of(block, self.element, header)
                yield f"[{index}]", first[at & ((1 << shift) - 1)]
            else:
                yield f"[{index}]", "(untouched)"

    def display_hint(self):
        return "array"


class ListPrinter(ArrayPrinter):
    """cow_List: the first elements of its array."""

    def __init__(self, value):
        super().__init__(value["_array"], int(value["_count"]))

    def to_string(self):
        return f"cow_List of {self.length}"


def has_base(kind, name):
    if kind.strip_typedefs().code != gdb.TYPE_CODE_STRUCT:
        return False
    bases = [field.type for field in kind.fields() if field.is_base_class]
    return any(base.name == name or has_base(base, name) for base in bases)


def object_in(holder, kind):
    """The object of class kind that a counted holder of it keeps."""
    if has_base(kind, "cow_HolderCount"):  # the object counts itself
        kept = holder.cast(kind.pointer())
        return kept.cast(kept.dynamic_type).dereference()
    for policy in ("cow_Direct", "cow_Virtual"):
        try:
            body = gdb.lookup_type(f"cow_CountedHld<{kind}, {policy}<{kind}> >")
        except gdb.error:
            continue
        kept = holder.cast(body.pointer())["_object"]
        if policy == "cow_Virtual":
            kept = next(iter(gdb.default_visualizer(kept).children()))[1]
            kept = kept.cast(kept.dynamic_type).dereference()
        return kept
    return holder.dereference()


def held(value):
    """(object, sharers) of a cow_COW, or None when it is null."""
    kind = value.type.strip_typedefs()
    if not kind.name.startswith("cow_COW<"):
        kind = next(field.type for field in kind.fields() if field.is_base_class)
    holder = value["_holder"]
    if not holder:
        return None
    return object_in(holder, kind.template_argument(0)), int(holder["_count"])


class HolderPrinter:
    """cow_COW and cow_ArrayCOW: the object and how many share it."""

    def __init__(self, value):
        self.held = held(value)

    def to_string(self):
        return f"shared by {self.held[1]}" if self.held else "null"

    def children(self):
        if self.held:
            yield "object", self.held[0]


class BodyPrinter:
    """cow_1DArrayList and cow_Map: the standard container within."""

    def __init__(self, value):
        self.held = held(value["_body"])

    def to_string(self):
        return f"shared by {self.held[1]}" if self.held else "empty"

    def children(self):
        if self.held:
            yield "body", self.held[0]


class TreePrinter:
    """cow_Btree: keys and values, ascending."""

    def __init__(self, value):
        self.value = value

    def to_string(self):
        return f"cow_Btree of {sum(1 for _ in self.nodes())}"

    def nodes(self):
        above = []
        link = self.value["_root"]
        while above or link["_holder"]:
            while link["_holder"]:
                above.append(held(link)[0])
                link = above[-1]["_links"][0]
            node = above.pop()
            yield node
            link = node["_links"][1]

    def children(self):
        for index, node in enumerate(self.nodes()):
            yield f"[{index}].key", node["_key"]
            yield f"[{index}].value", node["_value"]

    def display_hint(self):
        return "map"


def printers():
    collection = gdb.printing.RegexpCollectionPrettyPrinter("caeutils")
    for name, printer in (("cow_1DArray", ArrayPrinter), ("cow_List", ListPrinter),
                          ("cow_COW", HolderPrinter), ("cow_ArrayCOW", HolderPrinter),
                          ("cow_1DArrayList", BodyPrinter), ("cow_Map", BodyPrinter),
                          ("cow_Btree", TreePrinter)):
        collection.add_printer(name, f"^{name}<", printer)
    return collection


gdb.printing.register_pretty_printer(gdb.current_objfile(), printers(), replace=True)
