"""Progress of long commands as users see it, and Ctrl-C. Run with the path of caehost."""
import fcntl
import os
import pty
import re
import select
import signal
import struct
import subprocess
import sys
import tempfile
import termios
import time
import unittest

HOST = sys.argv.pop(1)

# The same block of cells some times over.
MESH = """
import itertools, numpy as np
from caehost import *
n = 30
points = np.array(list(itertools.product(range(n + 1), repeat=3)), dtype=float)
at = np.arange((n + 1) ** 3, dtype=np.int32).reshape(n + 1, n + 1, n + 1)
low, high = slice(0, n), slice(1, n + 1)
corners = [at[x, y, z].ravel() for z in (low, high)
           for x, y in ((low, low), (high, low), (high, high), (low, high))]
cells = np.column_stack(corners)
"""
LOOP = """
import time
from caehost import *
for i in track(range(40), name='Reading files'):
    time.sleep(0.02)
    if i == 30:
        say('thirty')
        print('and')
say('end')
"""


class Progress(unittest.TestCase):
    def terminal(self, *arguments, term="xterm"):
        """Starts the host on a terminal of 60 columns."""
        try:
            child, terminal = pty.fork()
        except OSError as error:
            self.skipTest(f"this system gives no terminal: {error}")
        if child == 0:
            os.execve(HOST, [HOST, *arguments], {"TERM": term, "HOME": tempfile.gettempdir()})
        fcntl.ioctl(terminal, termios.TIOCSWINSZ, struct.pack("HHHH", 24, 60, 0, 0))
        self.addCleanup(os.close, terminal)
        self.seen = b""
        return child, terminal

    def expect(self, terminal, pattern):
        """Reads until the pattern comes, and returns what came before."""
        end = time.monotonic() + 120
        while not (found := re.search(pattern, self.seen)):
            self.assertLess(time.monotonic(), end, self.seen)
            if select.select([terminal], [], [], 1)[0]:
                try:
                    self.seen += os.read(terminal, 4096)
                except OSError:  # the host has ended
                    self.fail(f"{pattern} in {self.seen}")
        before, self.seen = self.seen[: found.start()], self.seen[found.end():]
        return before

    def test_bar_on_a_terminal(self):
        child, terminal = self.terminal("-c", LOOP)
        self.expect(terminal, rb"\rReading files \[#+\.+\]  *\d+ %  [\d.]+ /s  0:00 left")
        before = self.expect(terminal, rb"thirty\r\nand\r\n")
        self.assertRegex(before, rb"\r +\r$")  # wiped
        for drawn in before.split(b"\r"):
            self.assertLess(len(drawn), 60)
        self.assertRegex(self.expect(terminal, rb"end\r\n"), rb"\r +\r$")
        self.assertEqual(os.waitpid(child, 0)[1], 0)

    def test_lines_elsewhere(self):
        code = LOOP.replace("0.02", "0.06")
        done = subprocess.run([HOST, "-c", code], capture_output=True, text=True, timeout=120)
        self.assertEqual((done.returncode, done.stdout), (0, "thirty\nand\nend\n"))
        lines = done.stderr.splitlines()
        self.assertTrue(lines)
        for line in lines[:-1]:
            self.assertRegex(line, r"^Reading files: \d+ % \(\d+ of 40\)(, 0:0\d left)?$")
        self.assertRegex(lines[-1], r"^Reading files: ")
        child, terminal = self.terminal("-c", code, term="dumb")
        self.expect(terminal, rb"^Reading files: \d+ %[^\r]*\r\n")
        self.expect(terminal, rb"end\r\n")
        self.assertEqual(os.waitpid(child, 0)[1], 0)

    def test_silent_on_request(self):
        for arguments in (["--progress", "none", "-c", LOOP],
                          ["-c", "from caehost import *\nprogress(NO_PROGRESS)" + LOOP]):
            done = subprocess.run([HOST, *arguments], capture_output=True, text=True, timeout=120)
            self.assertEqual((done.returncode, done.stderr), (0, ""))
        done = subprocess.run([HOST, "--progress", "bars"], capture_output=True, text=True)
        self.assertEqual(done.returncode, 2)
        self.assertIn("option --progress needs auto, bar, lines or none, not bars", done.stderr)
        done = subprocess.run([HOST, "--progress", "lines", "-c", "from caehost import *\n"
                               "print(progress(PROGRESS_BAR), progress(AUTO), progress())"],
                              capture_output=True, text=True)
        self.assertEqual(done.stdout, "PROGRESS_LINES PROGRESS_BAR AUTO\n")

    def test_track(self):
        code = """
from caehost import *
assert list(track(iter('abc'), 'Letters')) == ['a', 'b', 'c']
assert [x for x in track([], total=7)] == []
loops = track(range(3)), track(range(3), name='inner', total=3)
assert [(a, b) for a, b in zip(*loops)] == [(0, 0), (1, 1), (2, 2)]
for _ in track(range(9)):
    break
for wrong, error in (((3,), TypeError), (([], 'x', -1), ValueError), (([], 'x', 'y'), TypeError)):
    try:
        track(*wrong)
    except error:
        continue
    raise AssertionError(wrong)
def failing():
    yield 1
    raise KeyError('gone')
try:
    list(track(failing()))
except KeyError as error:
    print(error)
"""
        done = subprocess.run([HOST, "-c", code], capture_output=True, text=True, timeout=120)
        self.assertEqual((done.returncode, done.stdout, done.stderr), (0, "'gone'\n", ""))

    def test_interrupt_at_the_prompt(self):
        script = tempfile.NamedTemporaryFile("w", suffix=".py")
        self.addCleanup(script.close)
        script.write(MESH + "part('block', points, [(HEX8, cells)] * 40)\n")
        script.flush()
        child, terminal = self.terminal("--progress", "bar")
        self.expect(terminal, rb">>> ")
        os.write(terminal, f"exec(open({script.name!r}).read()); before = boundingBox('block')\n"
                 .encode())
        self.expect(terminal, rb"\n>>> ")
        for command, shown, wiped in (
                (b"massProperties('block')", rb"\rMeasuring the volume \[", rb"\r +\r"),
                (b"elementQuality('block', MEAN_RATIO)", rb"_ = ", rb"")):
            os.write(terminal, b"while True: _ = " + command + b"\n\n")
            self.expect(terminal, shown)
            time.sleep(0.3)
            os.kill(child, signal.SIGINT)
            began = time.monotonic()
            before = self.expect(terminal, rb"KeyboardInterrupt\r\n>>> ")
            self.assertLess(time.monotonic() - began, 30)
            self.assertRegex(before, rb"(?s)" + wiped + rb"Traceback .*$")
            os.write(terminal, b"print('same', boundingBox('block') == before)\n")
            self.expect(terminal, rb"same True\r\n>>> ")
        os.write(terminal, b"\x04")
        self.assertEqual(os.waitpid(child, 0)[1], 0)

    def test_interrupted_work_leaves_nothing(self):
        """Ctrl-C at many moments of what reads, measures and draws."""
        with tempfile.TemporaryDirectory() as folder:
            code = MESH + """
import signal, sys
def make():
    part('block', points, [(HEX8, cells)] * 4)
make()
numbers = [0] * 300_000
rows = points.tolist()
field('block', 'f', points)
group('block', 'g', cells=[0, 1])
show('block')
commands = [
    lambda: group('block', 'g', cells=numbers),
    lambda: part('block', rows, [(HEX8, cells)]),
    lambda: part('block', rows, cells.tolist()),
    lambda: report('block'),
    lambda: field('block', 'f', rows),
    lambda: (hide(), show('block', SHADED_EDGES)),
    lambda: contour('block', 'f', COMPONENT_X),
]
def read(path):
    with open(path, 'rb') as file:
        return file.read()
def picture():
    savePicture('picture.png', width=900, height=900)
    return read('picture.png')
try:
    whole = picture()
except Exception as error:
    assert 'No pictures can be drawn' in str(error), error
else:
    commands += [picture] * 3
hits = 0
for delay in (0.001, 0.02, 0.1):
    for command in commands:
        saveModel('before.cae')
        steps = changeHistory()['undo']
        signal.setitimer(signal.ITIMER_REAL, delay)
        try:
            command()
            while True:
                pass
        except KeyboardInterrupt:
            hits += 1
        if changeHistory()['undo'] > steps:  # the command was faster
            undo()
        saveModel('after.cae')
        assert read('before.cae') == read('after.cae')
        make()
        resetView()
        show('block')
        field('block', 'f', points)
        if picture in commands:
            assert picture() == whole
assert hits == 3 * len(commands), hits
print('ok', file=sys.stderr)
"""
            code = ("import signal\nsignal.signal(signal.SIGALRM, signal.default_int_handler)\n" +
                    code)
            done = subprocess.run([HOST, "--progress", "none", "-c", code], capture_output=True,
                                  text=True, timeout=280, cwd=folder)
            self.assertEqual((done.returncode, done.stderr), (0, "ok\n"), done.stdout[-2000:])


if __name__ == "__main__":
    unittest.main()
