"""Reads STL files. Normals and attributes of facets are passed over: corners tell more."""

import numpy as np

from .mesh import TRIANGLE, Mesh
from .source import word_starts

_FACET = np.dtype([("normal", "<f4", 3), ("corners", "<f4", (3, 3)), ("attribute", "<u2")])
_HEAD = 84  # bytes before the facets of a binary file: a text of 80, and the number of facets
# The words of a facet in an ASCII file; None for a number.
_WORDS = ["facet", "normal", None, None, None, "outer", "loop", *["vertex", None, None, None] * 3,
          "endloop", "endfacet"]
_STEP = 1 << 24  # [bytes] text that is taken at once, which bounds the memory
_NUMBER_STARTS = np.zeros(256, bool)
_NUMBER_STARTS[list(b"0123456789+-.nNiI")] = True


def is_binary_stl(data):
    """Whether the number of facets agrees with the size; binary headers may begin with 'solid'."""
    return len(data) >= _HEAD and len(data) == _HEAD + _FACET.itemsize * _facet_count(data)


def read_stl(source):
    data = source.data
    is_text = data[:80].lstrip()[:5].lower() == b"solid" and b"\0" not in data[:512]
    if is_binary_stl(data) or not is_text:
        return _read_binary(source)
    return _read_text(source)


def _facet_count(data):
    return int.from_bytes(data[80:_HEAD], "little")


def _read_binary(source):
    source.binary = True
    source.need(_HEAD, "a header and the number of facets")
    count = _facet_count(source.data)
    source.at = _HEAD
    source.need(count * _FACET.itemsize, f"{count} facets")
    end = _HEAD + count * _FACET.itemsize
    if end < len(source.data):
        source.fail(f"the end of the file after {count} facets", end,
                    f"{len(source.data) - end} bytes")
    corners = np.frombuffer(source.data, _FACET, count, _HEAD)["corners"].reshape(-1, 3)
    for corner in np.flatnonzero(~np.isfinite(corners).all(axis=1))[:1].tolist():
        source.fail(f"finite coordinates of facet {corner // 3}",
                    _HEAD + _FACET.itemsize * (corner // 3) + 12 * (1 + corner % 3),
                    " ".join(map(str, corners[corner])))
    title = source.data[:80].split(b"\0")[0].decode("utf-8", "replace").strip()
    return _mesh(title, corners.astype(np.float64), [count], [title])


def _read_text(source):
    lower = source.data.lower()
    corners, counts, names = [], [], []
    while (line := source.line(None)) is not None:
        if line.split()[0].lower() != "solid":
            source.fail("solid", source.start)
        names.append(line[5:].strip())
        end = lower.find(b"endsolid", source.at)
        if end < 0:
            source.fail("endsolid", len(source.data))
        parts = [_facets(source, lower, start, stop)
                 for start, stop in _steps(lower, source.at, end)]
        counts.append(sum(len(part) // 3 for part in parts))
        corners += parts
        source.at = end
        source.line(None)
    return _mesh(names[0] if names else "", np.concatenate(corners or [np.zeros((0, 3))]), counts,
                 names)


def _steps(lower, start, end):
    """Pieces of the text of a solid that end with a facet: (start, end)."""
    while start < end:
        stop = lower.find(b"endfacet", start + _STEP, end)
        stop = end if stop < 0 else stop + len(b"endfacet")
        yield start, stop
        start = stop


def _facets(source, lower, start, stop):
    """The corners (3 n, 3) of the facets between two places of the text."""
    raw = np.frombuffer(lower[start:stop] + b" " * 16, np.uint8).copy()
    starts = word_starts(raw)
    good = np.ones(len(starts), bool)
    for index, word in enumerate(_WORDS):
        here = starts[index::len(_WORDS)]
        if word is None:
            good[index::len(_WORDS)] = _NUMBER_STARTS[raw[here]]
        else:
            letters = raw[here[:, None] + np.arange(len(word) + 1)]
            good[index::len(_WORDS)] = (letters[:, :-1] == list(word.encode())).all(axis=1) & (
                letters[:, -1] <= 32)
    if not good.all() or len(starts) % len(_WORDS):
        bad = int(np.argmin(good)) if not good.all() else len(starts)
        word = _WORDS[bad % len(_WORDS)] or "a number"
        source.fail(word, start + int(starts[bad]) if bad < len(starts) else stop)
    # The words are wiped out; what remains are the numbers, in their places.
    for index, word in enumerate(_WORDS):
        if word is not None:
            raw[starts[index::len(_WORDS)][:, None] + np.arange(len(word))] = 32
    facets = len(starts) // len(_WORDS)
    values = source.parse(raw.tobytes(), start, 12 * facets, np.dtype("f8"), "coordinates")
    values = values.reshape(facets, 12)[:, 3:].reshape(-1, 3)
    for corner in np.flatnonzero(~np.isfinite(values).all(axis=1))[:1].tolist():
        source.fail("finite coordinates",
                    start + int(starts[len(_WORDS) * (corner // 3) + 8 + 4 * (corner % 3)]),
                    " ".join(map(str, values[corner])))
    return values


def _mesh(title, corners, counts, names):
    """Equal corners become one point; points stand in the order of their first appearance."""
    corners = corners + 0.0  # of two zeros, one
    order = np.lexsort(corners.T)
    is_new = np.ones(len(corners), bool)
    is_new[1:] = (corners[order[1:]] != corners[order[:-1]]).any(axis=1)
    first = order[is_new]  # the sort is stable: the first of each
    point_of = np.empty(len(first), np.int32)
    by_appearance = np.argsort(first)
    point_of[by_appearance] = np.arange(len(first), dtype=np.int32)
    nodes = np.empty(len(corners), np.int32)
    nodes[order] = point_of[np.cumsum(is_new) - 1] if len(first) else 0
    facets = len(corners) // 3
    return Mesh(title, corners[first[by_appearance]], np.full(facets, TRIANGLE, np.uint8),
                np.arange(0, 3 * facets + 1, 3), nodes,
                cell_data={"solid": np.repeat(np.arange(len(counts), dtype=np.int32), counts)},
                file_data={"solids": names})
