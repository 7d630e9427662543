"""Every script that is shipped runs, and its journal repeats what its commands did.

usage: journal_test.py CAEHOST
"""

import os
import pathlib
import subprocess
import sys
import tempfile
import unittest

ROOT = pathlib.Path(__file__).resolve().parents[2]
CAEHOST = pathlib.Path(sys.argv[1]).resolve()
# A host built with the leak checker lists the suppressions it used.
ENVIRONMENT = {**os.environ, "LSAN_OPTIONS": "print_suppressions=0"}


def start(*args):
    return subprocess.run([CAEHOST, *args], capture_output=True, text=True, timeout=120,
                          env=ENVIRONMENT)


def run(*args):
    """What caehost prints; it must succeed and complain of nothing."""
    done = start(*args)
    if done.returncode or done.stderr:
        raise AssertionError(f"caehost {args} ended with {done.returncode}:\n{done.stderr}")
    return done.stdout


class Journal(unittest.TestCase):
    def replay(self, script, *args):
        """What a script prints, what its journal prints, and the journals of both runs."""
        with tempfile.TemporaryDirectory() as folder:
            first, second = f"{folder}/first.py", f"{folder}/second.py"
            printed = run("--journal", first, ROOT / script, *args)
            replayed = run("--journal", second, first)
            self.assertEqual(pathlib.Path(first).read_text(), pathlib.Path(second).read_text())
        return printed, replayed

    def test_the_demo_report_is_repeated(self):
        printed, replayed = self.replay("examples/demo/main.py")
        report, mistakes = printed.split("\nThree mistakes")
        self.assertEqual(report, replayed)
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

    def test_the_tour_prints_what_the_guide_says(self):
        printed, replayed = self.replay("examples/scripting/tour.py")
        self.assertEqual(printed, (ROOT / "examples/scripting/tour.expected").read_text())
        said = [line for line in printed.splitlines() if line in replayed.splitlines()]
        self.assertEqual(said, replayed.splitlines())

    def test_a_malformed_mesh_is_named(self):
        with tempfile.NamedTemporaryFile("w", suffix=".vtk") as file:
            file.write("# vtk DataFile Version 3.0\n\nASCII\nDATASET POLYDATA\n")
            file.flush()
            done = start(ROOT / "examples/demo/main.py", file.name)
        self.assertNotEqual(done.returncode, 0)
        self.assertIn(f"{file.name}: line 4: expected DATASET UNSTRUCTURED_GRID", done.stderr)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
