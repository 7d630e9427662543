"""Ctrl-C ends a long command; opaque objects are given back wherever they are dropped."""
import gc
import signal
import subprocess
import sys
import time
import weakref

from caehost import *


def interrupted(code):
    child = subprocess.Popen([sys.argv[1], "--as-host", "-c", code], stdout=subprocess.PIPE,
                             stderr=subprocess.PIPE, text=True)
    assert child.stdout.readline() == "ready\n"
    time.sleep(0.2)  # now it waits in the command
    child.send_signal(signal.SIGINT)
    output, errors = child.communicate(timeout=60)
    return child.returncode, output, errors


START = "from caehost import *\ntry: print('ready', flush=True), wait()\n"
code, _, errors = interrupted(START + "finally: print('end')")
assert code == -signal.SIGINT and errors.endswith("KeyboardInterrupt\n"), (code, errors)
code, output, _ = interrupted(START + "except KeyboardInterrupt: print('caught')")
assert code == 0 and output == "caught\n"


class Thing:
    pass


thing = Thing()
alive = weakref.ref(thing)
keep(thing)
del thing
gc.collect()
assert alive() is not None
dropInThread()
for _ in range(100):
    pass
assert alive() is None
