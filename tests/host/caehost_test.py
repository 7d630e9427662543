"""Drives caehost from outside: options, exit codes, scripts, standard input, prompt."""
import os
import pty
import select
import signal
import subprocess
import sys
import tempfile
import time
import unittest

HOST = sys.argv.pop(1)


def run(*arguments, text=None, **options):
    done = subprocess.run([HOST, *arguments], input=text, capture_output=True, text=True,
                          timeout=120, **options)
    return done.returncode, done.stdout, done.stderr


class CommandLine(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = folder.name

    def write(self, name, text):
        path = os.path.join(self.folder, name)
        with open(path, "w", encoding="utf-8") as file:
            file.write(text)
        return path

    def test_help_and_version(self):
        self.assertIn("usage: caehost", run("--help")[1])
        self.assertRegex(run("--version")[1], r"^caehost \d+\.\d+\.\d+ \(Python 3\.\d+\.\d+\)\n$")

    def test_wrong_options(self):
        for arguments, message in [
            (["--jornal", "x"], "unknown option --jornal"),
            (["-x"], "unknown option -x"),
            (["-c"], "option -c needs code"),
            (["--journal"], "option --journal needs a file"),
        ]:
            code, _, errors = run(*arguments)
            self.assertEqual((code, errors),
                             (2, f"caehost: {message}\nTry 'caehost --help'.\n"))
        code, _, errors = run("no-such-script.py")
        self.assertEqual(code, 2)
        self.assertIn("no-such-script.py", errors)

    def test_script(self):
        self.write("helper.py", "value = 'gr\u00f6\u00dfer'")
        script = self.write("script.py", "import sys, helper\nprint(__name__, __file__)\n"
                            "print(sys.argv, sys.path[0], helper.value)\nsys.exit(3)")
        code, output, errors = run(script, "-c", "--help", env={"PYTHONPATH": "/elsewhere"})
        self.assertEqual((code, errors), (3, ""))
        self.assertEqual(output, f"__main__ {script}\n[{script!r}, '-c', '--help'] "
                                 f"{self.folder} gr\u00f6\u00dfer\n")

    def test_code_and_standard_input(self):
        code = "import sys; print(sys.argv, __name__)"
        self.assertEqual(run("-c", code, "a", "-b")[1], "['-c', 'a', '-b'] __main__\n")
        self.assertEqual(run("-", "a", text=code)[1], "['-', 'a'] __main__\n")
        self.assertEqual(run(text=code)[1], "[''] __main__\n")

    def test_uncaught_exceptions(self):
        code, output, errors = run("-c", "from caehost import *\npart(nmae='x')")
        self.assertEqual((code, output), (1, ""))
        self.assertRegex(errors, "(?s)^Traceback .*\nTypeError: keyword error on nmae\n"
                                 r"did you mean name\?\npart\(.*\)\n$")
        self.assertEqual(run("-c", "import sys; sys.exit('message')")[0], 1)
        self.assertEqual(run("-c", "syntax error")[0], 1)

    def test_interrupt(self):
        child = subprocess.Popen([HOST, "-c", "print('ready', flush=True)\nimport time\n"
                                  "time.sleep(60)"], stdout=subprocess.PIPE, stderr=subprocess.PIPE)
        child.stdout.readline()
        child.send_signal(signal.SIGINT)
        self.assertIn(b"KeyboardInterrupt", child.communicate(timeout=60)[1])
        self.assertEqual(child.returncode, -signal.SIGINT)  # 130 in a shell

    def test_start_imports_little(self):
        output = run("-c", "import sys, caehost; print([m for m in ('inspect', 'numpy', 're', "
                     "'readline') if m in sys.modules])")[1]
        self.assertEqual(output, "[]\n")


class Prompt(unittest.TestCase):
    def test_completion_and_history(self):
        with tempfile.TemporaryDirectory() as home:
            try:
                child, terminal = pty.fork()
            except OSError as error:
                self.skipTest(f"this system gives no terminal: {error}")
            if child == 0:
                os.execve(HOST, [HOST], {"HOME": home, "TERM": "dumb"})

            def expect(text):
                seen = b""
                end = time.monotonic() + 60
                while text not in seen:
                    self.assertLess(time.monotonic(), end, seen)
                    if select.select([terminal], [], [], 1)[0]:
                        seen += os.read(terminal, 4096)

            expect(b">>> ")
            os.write(terminal, b"[OF\t, 1]\n")
            expect(b"[OFF, 1]\r\n>>> ")
            os.write(terminal, b"part(poi\t")
            expect(b"part(points=")
            os.write(terminal, b"\x15boundingB\t\x08\n")
            expect(b"<command boundingBox(part)>\r\n>>> ")
            os.write(terminal, b"\x04")
            self.assertEqual(os.waitpid(child, 0)[1], 0)
            with open(os.path.join(home, ".caehost_history")) as history:
                self.assertEqual(history.read(), "[OFF, 1]\nboundingBox\n")


if __name__ == "__main__":
    unittest.main()
