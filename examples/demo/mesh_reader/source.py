"""The bytes of a mesh file: lines, words and numbers, and errors that say where."""

import re
import warnings

import numpy as np

_BLANK = np.zeros(256, bool)
_BLANK[list(b" \t\n\r\v\f")] = True
_NOT_BLANK = re.compile(rb"[^ \t\n\r\v\f]")
_INTEGER = re.compile(rb"[+-]?\d+")
_NUMBER = re.compile(rb"[+-]?(\d+\.?\d*([eE][+-]?\d+)?|\.\d+([eE][+-]?\d+)?|inf|infinity|nan)",
                     re.IGNORECASE)


class MeshFileError(Exception):
    """A file that is not what it should be: where, and what was expected."""


def word_starts(data):
    """Where the words of some bytes start."""
    blank = _BLANK[np.frombuffer(data, np.uint8)]
    starts = np.flatnonzero(blank[:-1] & ~blank[1:]) + 1
    return np.concatenate([[0], starts]) if len(blank) and not blank[0] else starts


def _may_not_fit(values, limits):
    """Whether some are outside the limits, or at the end of what the conversion can tell."""
    ends = np.iinfo(values.dtype)
    return bool(((values < limits.min) | (values > limits.max) | (values == ends.max)).any()
                or (ends.min < 0 and (values == ends.min).any()))


class Source:
    """Goes through the bytes of one file; `at` is where the next thing is expected."""

    def __init__(self, path, data):
        self.path, self.data, self.at = path, data, 0
        self.start = 0       # of the last line that was read
        self.binary = False  # errors name bytes, numbers are read as they are in memory
        self._words = None

    def fail(self, expected, at=None, found=None):
        """Raises the error for the place `at`; by default, where the reader is."""
        at = self.at if at is None else int(at)
        if self.binary:
            where = f"byte {at}"
        else:
            following = _NOT_BLANK.search(self.data, at)
            at = following.start() if following else len(self.data)
            end = at - 1 if at == len(self.data) and self.data.endswith(b"\n") else at
            where = f"line {self.data.count(10, 0, max(end, 0)) + 1}"  # 10: the line feed
        if found is None:
            word = self.data[at:at + 40].split(maxsplit=1)
            found = repr(word[0].decode("ascii", "replace")) if word else "the end of the file"
        raise MeshFileError(f"{self.path}: {where}: expected {expected}, found {found}")

    def line(self, expected):
        """The next line that is not blank, as text; None at the end if nothing is expected."""
        following = _NOT_BLANK.search(self.data, self.at)
        if following is None:
            self.at = len(self.data)
            return None if expected is None else self.fail(expected)
        self.start = following.start()
        end = self.data.find(b"\n", self.start)
        end = len(self.data) if end < 0 else end
        self.at = min(end + 1, len(self.data))
        return self.data[self.start:end].decode("latin-1").strip()

    def words(self, expected, count):
        """The words of the next line, which has `count` of them or more."""
        words = self.line(expected).split()
        if len(words) < count:
            self.fail(expected, self.start, repr(" ".join(words)))
        return words

    def count(self, words, index, what, least=0):
        """A number of things, one of the words of the line read last."""
        word = words[index] if index < len(words) else " ".join(words)
        if not re.fullmatch(r"[0-9]{1,15}", word) or int(word) < least:
            self.fail(f"the number of {what}" + (f", at least {least}" if least else ""),
                      self.start, repr(word))
        return int(word)

    def numbers(self, count, dtype, what):
        """The next `count` numbers. Takes no memory before it knows that they are there."""
        if self.binary:
            size = count * dtype.itemsize
            self.need(size, f"{count} {what}")
            values = np.frombuffer(self.data, dtype, count, self.at)
            self.at += size
            return values.astype(dtype.newbyteorder("="))
        if count == 0:
            return np.zeros(0, dtype.newbyteorder("="))
        first = self._first_word(self.at)
        if len(self._words) - first < count:
            self.fail(f"{count} {what}", len(self.data),
                      f"{len(self._words) - first} and the end of the file")
        start = self.at
        following = first + count
        self.at = int(self._words[following]) if following < len(self._words) else len(self.data)
        return self.parse(self.data[start:self.at], start, count, dtype, what)

    def need(self, size, what):
        left = len(self.data) - self.at
        if size > left:
            self.fail(f"{what} ({size} bytes)", found=f"{left} bytes")

    def parse(self, text, start, count, dtype, what):
        """The numbers in `text`, which has `count` words and stands at `start` of the file."""
        dtype = dtype.newbyteorder("=")
        wide = np.dtype("f8" if dtype.kind == "f" else dtype.kind + "8")
        values = None
        if dtype.kind != "u" or b"-" not in text:
            with warnings.catch_warnings():
                warnings.simplefilter("error")
                try:
                    values = np.fromstring(text, wide, sep=" ")
                except (Warning, ValueError):
                    pass  # some word is no number
        limits = None if dtype.kind == "f" else np.iinfo(dtype)
        if values is None or len(values) != count or (limits and _may_not_fit(values, limits)):
            values = self._parse_words(text, start, wide, limits, what)
        with np.errstate(over="ignore"):
            return values.astype(dtype)

    def _parse_words(self, text, start, wide, limits, what):
        """The same with no doubt, word by word: finds the one that is no such number."""
        values = []
        for match in re.finditer(rb"[^ \t\n\r\v\f]+", text):
            word = match.group()
            good = (_NUMBER if limits is None else _INTEGER).fullmatch(word)
            if good and limits is None:
                values.append(float(word))
            elif good and len(word) < 30 and limits.min <= int(word) <= limits.max:
                values.append(int(word))
            else:
                kind = "a number" if limits is None else "an integer"
                if good:
                    kind += f" from {limits.min} to {limits.max}"
                self.fail(f"{kind} among the {what}", start + match.start())
        return np.array(values, wide)

    def place(self, start, number, itemsize):
        """Where the number of that index stands, counted from `start`."""
        if self.binary:
            return start + number * itemsize
        return self._words[self._first_word(start) + number]

    def _first_word(self, at):
        if self._words is None:
            self._words = word_starts(self.data)
        return int(np.searchsorted(self._words, at))
