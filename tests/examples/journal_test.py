"""Every script that is shipped runs, and its journal repeats what its commands did.

usage: journal_test.py CAEHOST
"""

import os
import pathlib
import struct
import subprocess
import sys
import tempfile
import unittest
import zlib

import numpy as np

ROOT = pathlib.Path(__file__).resolve().parents[2]
CAEHOST = pathlib.Path(sys.argv[1]).resolve()
# A host built with the leak checker lists the suppressions it used.
NO_PICTURES = "No pictures can be drawn"
ENVIRONMENT = {**os.environ, "LSAN_OPTIONS": "print_suppressions=0"}


def start(*args, folder=None):
    # Commands that take long, as they do with checkers on, would tell of it among the errors.
    return subprocess.run([CAEHOST, "--progress", "none", *args], capture_output=True, text=True, timeout=120,
                          env=ENVIRONMENT, cwd=folder)


def run(*args, folder=None):
    """What caehost prints; it must succeed and complain of nothing."""
    done = start(*args, folder=folder)
    if NO_PICTURES in done.stderr:
        raise unittest.SkipTest(done.stderr.splitlines()[-1])
    if done.returncode or done.stderr:
        raise AssertionError(f"caehost {args} ended with {done.returncode}:\n{done.stderr}")
    return done.stdout


def pixels(path):
    """A picture (height, width, 3), of a PNG file as the host writes them: RGB, no filters."""
    data, at, rows = path.read_bytes(), 8, b""
    while at < len(data):
        size, kind = struct.unpack(">I4s", data[at:at + 8])
        if kind == b"IHDR":
            width, height, *form = struct.unpack(">IIBBBBB", data[at + 8:at + 21])
        rows += data[at + 8:at + 8 + size] if kind == b"IDAT" else b""
        at += size + 12
    rows = np.frombuffer(zlib.decompress(rows), np.uint8).reshape(height, 1 + 3 * width)
    assert form == [8, 2, 0, 0, 0] and not rows[:, 0].any()
    return rows[:, 1:].reshape(height, width, 3).astype(int)


class Journal(unittest.TestCase):
    def setUp(self):
        self.folder = tempfile.TemporaryDirectory()
        self.addCleanup(self.folder.cleanup)
        self.pictures = {}  # that scripts of this test drew, by name

    def replay(self, script, *args):
        """What a script prints, what its journal prints; both draw and save the same."""
        folder = pathlib.Path(tempfile.mkdtemp(dir=self.folder.name))
        first, second = folder / "first.py", folder / "second.py"
        printed = run("--journal", first, ROOT / script, *args, folder=folder)
        made = {path: path.read_bytes() for path in folder.glob("**/*")
                if path.suffix in (".png", ".cae")}
        self.pictures.update((path.name, path) for path in made if path.suffix == ".png")
        for path in made:
            path.unlink()
        replayed = run("--journal", second, first, folder=folder)
        self.assertEqual(first.read_text(), second.read_text())
        for path, content in made.items():
            self.assertEqual(path.read_bytes(), content, path)
        return printed, replayed

    def test_the_demo_is_repeated(self):
        printed, replayed = self.replay("examples/demo/main.py", "--pictures", "drawn")
        self.assertIn("""shaft middle  NOT_YET_ACTIVE  CREATED     MODIFIED    DEACTIVATED
""", printed)
        self.assertIn("""Undo of deleteStep: 4 steps.
Opened what was saved: 1 part, 4 steps, 4 loads.
""", printed)
        report, rest = printed.split("\nThree mistakes")
        mistakes, pictures, paths = rest.partition("\nPictures\n")
        self.assertEqual(report + pictures + paths, replayed)
        if NO_PICTURES not in mistakes:
            names = ["1_iso.png", "2_front.png", "3_top.png", "4_deformed.png", "5_stress.png"]
            self.assertEqual(paths.split(), [f"drawn/{name}" for name in names])
            self.assertEqual(sorted(self.pictures), names)
            for path in self.pictures.values():
                picture = pixels(path)
                self.assertEqual(picture.shape, (960, 1280, 3))
                # Something is there, and nothing of it is cut off.
                seen = (picture != picture[0, 0]).any(axis=2)
                self.assertGreater(seen.mean(), 0.1)
                self.assertFalse(seen[[0, -1]].any() or seen[:, [0, -1]].any(), path.name)
        for line in ("  cells             8723 (8723 TET4)\n",
                     "  bounding box      (0, 0, 0) to (120, 80, 110) mm\n",
                     "  volume            212234 mm^3\n"):
            self.assertIn(line, report)
        for line in ("    TypeError: keyword error on densty\n",
                     "    TypeError: arg3(cells)[0][3]; found string, expecting int\n",
                     "    RangeError: density must be a Float > 0\n"):
            self.assertIn(line, mistakes)
        # The notes: the nearest keyword, and the command's signature.
        self.assertRegex(mistakes, r"(?s)keyword error on densty\n.*\bdensity\b.*massProperties\(")

    def test_scripts_print_what_the_guides_say(self):
        for folder in ("scripting", "modelling"):
            for script in sorted((ROOT / "examples" / folder).glob("*.py")):
                with self.subTest(script.name):
                    printed, replayed = self.replay(script)
                    self.assertEqual(printed, script.with_suffix(".expected").read_text())
                    # Commands print again; what scripts print themselves is not in the journal.
                    said = [line for line in printed.splitlines() if line in replayed.splitlines()]
                    self.assertEqual(said, replayed.splitlines())

    def test_the_viewing_guide_shows_what_its_examples_draw(self):
        scripts = {"first": ["bar"], "camera": ["front", "placed", "tip", "turned"],
                   "contours": ["bands", "cells", "deformed", "smooth"], "lights": ["lights"],
                   "markers": ["markers"], "stl": ["rings"]}
        shipped = (ROOT / "examples" / "viewing").glob("*.py")
        self.assertEqual({path.stem for path in shipped}, set(scripts))
        for script, names in scripts.items():
            self.replay(f"examples/viewing/{script}.py")
            self.assertLessEqual({f"{name}.png" for name in names}, set(self.pictures))
        rings = self.pictures["rings.png"].with_suffix(".stl")
        printed, _ = self.replay("examples/demo/main.py", rings)  # a mesh of one's own
        self.assertIn("rings.stl: 2304 points, 4608 cells\n", printed)
        self.replay("examples/demo/main.py")
        for path in (ROOT / "docs" / "images").glob("*.png"):
            with self.subTest(path.name):
                far = np.abs(pixels(path) - pixels(self.pictures[path.name])).max(axis=2) > 2
                self.assertLess(far.mean(), 0.0005, "its example draws another picture now")

    def test_a_malformed_mesh_is_named(self):
        with tempfile.NamedTemporaryFile("w", suffix=".vtk") as file:
            file.write("# vtk DataFile Version 3.0\n\nASCII\nDATASET POLYDATA\nPOINTS 1 int\n0 0")
            file.flush()
            done = start(ROOT / "examples/demo/main.py", file.name)
        self.assertNotEqual(done.returncode, 0)
        self.assertIn(f"{file.name}: line 6: expected 3 coordinates, found 2", done.stderr)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
