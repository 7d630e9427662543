"""Drives caehost from outside: undo and redo, blocks of changes, handles, journals of sessions that
were killed, files that are no models."""
import io
import os
import random
import signal
import struct
import subprocess
import sys
import tempfile
import textwrap
import time
import unittest

import cbor2  # on Debian: apt-get install python3-cbor2

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "support"))
from crc32c import crc32c  # noqa: E402

HOST = sys.argv.pop(1)

# What the scripts start with. state() is all that a failed command must leave as it was.
PRELUDE = """
import os, resource
from caehost import *
POINTS = [(0, 0, 0), (1, 0, 0), (0, 1, 0), (0, 0, 1), (1, 1, 1)]
CELLS = [(0, 1, 2, 3), (1, 2, 3, 4)]

def model():
    saveModel("state.cae")
    with open("state.cae", "rb") as file:
        return file.read()

def state():
    return model(), changeHistory()

def raised(action, kind):
    try:
        exec(action, globals()) if isinstance(action, str) else action()
    except kind as error:
        return str(error)
    raise AssertionError(f"{action} raised no {kind.__name__}")
"""

# One command a line, of every kind that changes the model; at the end a block is still open.
SESSION = [line for line in """
plate = part('plate', POINTS, CELLS)
other = part('other', POINTS, CELLS[:1])
group(plate, 'first', [0])
nodeSet(plate, 'foot', [0, 1, 2])
field('other', 'heat', [0.1, 0.2, float('nan'), 4.0, 5.0])
other.name = 'lid'
setModelSettings(description='a plate', formulation=TOTAL_LAGRANGIAN)
steel = material('steel', 'plain', density=7.8e-6, elastic=(210000.0, 0.3))
assignMaterial(plate, steel, 'first')
steel.name = 'S235'
copyMaterial(steel, 'S355')
begin = step('begin')
push = step('push', begin, period=2.5)
hold = step('hold')
held = support('held', 'begin', plate, 'foot', x=0.0, y=0.0)
pull = force('pull', push, plate, 'foot', y=-5.0)
setLoad(pull, push, x=1.5)
setStatus(pull, hold, 'y', FREED)
deactivate(held, hold)
begin.name = 'start'
undo(2)
redo()
saveModel('saved.cae')
copy = part('lid', POINTS[:4], CELLS[:1])
deletePart('lid')
openModel('saved.cae')
undo()
newModel()
undo(1)
beginChanges('block')
lid = part('lid 2', POINTS, CELLS)
deletePart(lid)
beginChanges('inner')
group('plate', 'second', [0])
dropChanges()
keepChanges()
beginChanges('open to the end')
group('plate', 'third', [0])
""".splitlines() if line]


def run(script, folder):
    """Runs a script in a folder; it must succeed."""
    path = os.path.join(folder, "script.py")
    with open(path, "w", encoding="utf-8") as file:
        file.write(PRELUDE + textwrap.dedent(script))
    done = subprocess.run([HOST, path], capture_output=True, text=True, timeout=250,
                          cwd=folder)
    if done.returncode != 0:
        raise AssertionError((done.stdout + done.stderr)[-2000:])


class Case(unittest.TestCase):
    def folder(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        return folder.name

    def run_script(self, script):
        run(script, self.folder())


def bytes_of(*path):
    with open(os.path.join(*path), "rb") as file:
        return file.read()


def replayed(folder):
    """The bytes of the model that the journal in a folder makes."""
    with open(os.path.join(folder, "journal.py")) as file, tempfile.TemporaryDirectory() as again:
        run(file.read() + "\nsaveModel('end.cae')", again)
        return bytes_of(again, "end.cae")


class Undo(Case):
    def test_every_step_back_and_forth(self):
        self.run_script(f"""
            states = [model()]
            for line in {SESSION[:20]!r}:
                exec(line)
                states.append(model())
            assert changeHistory() == {{"undo": 20, "undoLabel": "Step.name", "redo": 0,
                                        "redoLabel": ""}}, changeHistory()
            for expected in states[-2::-1]:
                undo()
                assert model() == expected
            for handle in (plate, other, steel, begin, pull):
                assert "no longer exists" in raised(lambda: handle.name, AccessError)
                assert repr(handle) == "<deleted object>"
            raised("undo()", ValueError)
            for expected in states[1:]:
                redo()
                assert model() == expected
            # The objects that come back are the same ones.
            assert plate == findPart("plate") and steel.name == "S235"
            redone = changeHistory()
            raised("redo()", ValueError)
            raised("undo(21)", ValueError)
            assert (model(), changeHistory()) == (states[-1], redone)
            assert undo(20) == "part" and model() == states[0]
            assert redo(20) == "Step.name" and model() == states[-1]
            # What fails forgets nothing of what can be redone; what changes nothing neither.
            undo(3)
            raised("part('plate', POINTS, [(0, 1, 2, 9)])", RangeError)
            raised("plate.name = 'no.legal.name'", TarvexNameError)
            with changes():
                pass
            assert changeHistory()["redo"] == 3
            clearHistory()
            assert changeHistory()["undo"] == changeHistory()["redo"] == 0
            """)

    def test_blocks(self):
        self.run_script("""
            plate = part("plate", POINTS, CELLS)
            before = state()
            with changes("two groups"):
                group(plate, "a", [0])
                with changes():
                    group(plate, "b", [1])
                assert "keepChanges" in raised("undo()", ValueError)
                raised("redo()", ValueError)
                raised("clearHistory()", ValueError)
            assert plate.groups == ("a", "b") and changeHistory()["undoLabel"] == "two groups"
            undo()
            assert model() == before[0] and changeHistory()["redoLabel"] == "two groups"
            redo()
            undo()

            class Mine(Exception):
                pass

            before = state()
            def failing():
                with changes("outer"):
                    group(plate, "a", [0])
                    try:
                        with changes("inner"):
                            plate.name = "renamed"
                            newModel()
                            part("plate", POINTS, CELLS)
                            raise Mine
                    except Mine:
                        assert plate.groups == ("a",) and plate.name == "plate"
                    deletePart("plate")
                    raise KeyboardInterrupt
            raised(failing, KeyboardInterrupt)
            assert state() == before and plate.groups == ()

            # What a block leaves open ends with it; one that its commands close is closed.
            def careless():
                with changes():
                    beginChanges()
                    changes().__enter__()
                    group(plate, "a", [0])
                    raise Mine
            raised(careless, Mine)
            assert state() == before
            with changes():
                with changes():
                    keepChanges()
                group(plate, "a", [0])
            undo()
            raised("changes().__exit__(None, None, None)", RuntimeError)
            clearHistory()
            before = state()

            # One that nobody closes is still open, and can be closed.
            changes("left").__enter__()
            group(plate, "a", [0])
            raised("undo()", ValueError)
            dropChanges()
            assert state() == before
            raised("keepChanges()", ValueError)
            raised("dropChanges()", ValueError)
            """)

    def test_renamed_and_replaced(self):
        self.run_script("""
            first = part("a", POINTS, CELLS)
            first.name = "b"
            second = part("a", POINTS[:4], CELLS[:1])
            first.name, second.name = "c", "b"
            third = part("b", POINTS, CELLS[1:])
            assert (first.name, third.name) == ("c", "b") and parts() == (first, third)
            assert "Part 'b'" in raised(lambda: second.name, AccessError)
            undo()
            assert second.name == "b" and findPart("b") == second
            raised(lambda: third.name, AccessError)
            undo(2)
            assert (first.name, second.name) == ("b", "a")
            redo(3)
            assert parts() == (first, third) and third != second
            raised("deletePart(second)", AccessError)
            deletePart(third)
            assert raised("findPart('b')", AccessError)
            raised("findPart('never')", KeyError)
            del second, third                  # the history alone keeps their parts
            undo(6)
            assert [p.name for p in parts()] == ["a"] and parts()[0] == first
            clearHistory()
            assert first.cells == 2
            """)

    def test_journal_that_cannot_be_written(self):
        """Each command of the session once with a journal that has no room left, then with room."""
        folder = self.folder()
        run(f"""
            def limit(size):
                resource.setrlimit(resource.RLIMIT_FSIZE, (size, resource.RLIM_INFINITY))
            open_journal("journal.py")
            for line in {SESSION + ["openModel('saved.cae')", "found = findPart('lid')",
                                    "found.name = 'found'"]!r}:
                before, size = state(), os.path.getsize("journal.py")
                if not line.startswith("saveModel"):
                    limit(size + 3)
                    raised(line, OSError)
                    limit(resource.RLIM_INFINITY)
                    assert os.path.getsize("journal.py") == size, line
                    assert state() == before, line
                exec(line)
            close_journal()
            saveModel("end.cae")
            """, folder)
        self.assertEqual(bytes_of(folder, "end.cae"), replayed(folder))

    def test_threads(self):
        # The second thread comes first: the model still belongs to the main thread.
        self.run_script("""
            import threading
            errors = []
            def other(lines):
                for line in lines:
                    errors.append(raised(line, Exception))
            def in_thread(*lines):
                thread = threading.Thread(target=other, args=(lines,))
                thread.start()
                thread.join()
            in_thread("part('a', POINTS, CELLS)")
            plate = part("plate", POINTS, CELLS)
            before = state()
            in_thread("plate.name = 'b'", "undo()", "newModel()", "beginChanges()")
            with changes():
                in_thread("group(plate, 'a', [0])", "keepChanges()")
            assert set(errors) == {"the model is changed in the main thread only"}, errors
            assert state() == before
            """)


class Random(Case):
    COMMANDS = 400

    def test_against_a_plain_model(self):
        """Commands at random, right and wrong ones, compared with dictionaries and with what their
        journal makes."""
        for seed in range(3):
            with self.subTest(seed=seed):
                folder = self.folder()
                run(f"""
                    import copy, random
                    random = random.Random({seed})
                    open_journal("journal.py")
                    # Parts with their groups; the same before each step; the open blocks, each
                    # with the model before it and the number of its changes.
                    now, done, undone, blocks = {{}}, [], [], []

                    def legal(name):
                        if "." in name:
                            raise KeyError(name)

                    def change(command, make_expected):
                        global now
                        expected = copy.deepcopy(now)
                        try:
                            make_expected(expected)
                        except KeyError:
                            raised(command, Exception)
                            return
                        command()
                        if blocks:
                            blocks[-1][2] += 1
                        else:
                            done.append(now)
                            undone.clear()
                        now = expected

                    def make(name):
                        def expect(model):
                            legal(name)
                            model[name] = set()
                        change(lambda: part(name, POINTS, CELLS), expect)

                    def delete(name):
                        change(lambda: deletePart(name), lambda model: model.pop(name))

                    def rename(name, to):
                        def expect(model):
                            legal(to)
                            if to in model:
                                raise KeyError(to)
                            model[to] = model.pop(name)
                        if name != to:
                            change(lambda: setattr(findPart(name), "name", to), expect)

                    def add_group(name, to):
                        def expect(model):
                            model[name].add(to)
                            legal(to)
                        change(lambda: group(name, to, [0]), expect)

                    def close():
                        before, old, changes = blocks.pop()
                        if random.random() < 0.5:
                            dropChanges()
                            assert model() == old
                            return before
                        keepChanges()
                        if blocks:
                            blocks[-1][2] += changes
                        elif changes > 0:
                            done.append(before)
                            undone.clear()
                        return now

                    for _ in range({self.COMMANDS}):
                        a, b = random.choices(["a", "b", "c", "d", "bad.name"], k=2)
                        kind = random.randrange(12)
                        if kind < 2:
                            make(a)
                        elif kind == 2:
                            delete(a)
                        elif kind < 5:
                            rename(a, b)
                        elif kind < 7:
                            add_group(a, b)
                        elif kind == 7 and not blocks and done:
                            steps = random.randint(1, min(3, len(done)))
                            undo(steps)
                            for _ in range(steps):
                                undone.append(now)
                                now = done.pop()
                        elif kind == 8 and not blocks and undone:
                            redo()
                            done.append(now)
                            now = undone.pop()
                        elif kind == 9 and len(blocks) < 3:
                            beginChanges()
                            blocks.append([now, model(), 0])
                        elif kind == 10 and blocks:
                            now = close()
                        elif kind == 11 and random.random() < 0.2:
                            change(newModel, lambda model: model.clear())
                        assert {{p.name: set(p.groups) for p in parts()}} == now, now
                        if not blocks:
                            history = changeHistory()
                            assert (history["undo"], history["redo"]) == (len(done), len(undone))
                    while blocks:
                        now = close()
                    close_journal()
                    saveModel("end.cae")
                    undo(len(done))
                    assert parts() == ()
                    """, folder)
                self.assertEqual(bytes_of(folder, "end.cae"), replayed(folder))


class Killed(Case):
    """A session that is killed replays from its journal up to the last finished command."""

    def session(self, lines, waits):
        """Starts one that writes a byte behind each command, and then waits for one."""
        folder = self.folder()
        script = os.path.join(folder, "session.py")
        with open(script, "w") as file:
            file.write(PRELUDE + f"for line in {lines!r}:\n    exec(line)\n    os.write(1, b'.')\n"
                       + ("    os.read(0, 1)\n" if waits else "") + "os.read(0, 1)\n")
        return folder, subprocess.Popen([HOST, "--journal", "journal.py", script], cwd=folder,
                                        stdin=subprocess.PIPE, stdout=subprocess.PIPE)

    def kill(self, child):
        child.send_signal(signal.SIGKILL)
        output, _ = child.communicate(timeout=60)
        self.assertEqual(child.returncode, -signal.SIGKILL)
        return output

    def plain(self, lines):
        """The model's bytes after 0, 1, 2... of the commands."""
        folder = self.folder()
        run("saveModel('0.cae')\n" + "".join(f"{line}\nsaveModel('{i + 1}.cae')\n"
                                             for i, line in enumerate(lines)), folder)
        return [bytes_of(folder, f"{i}.cae") for i in range(len(lines) + 1)]

    def test_behind_each_command(self):
        plain = self.plain(SESSION)
        self.assertGreater(len(set(plain)), 25)
        for count in range(1, len(SESSION) + 1):
            folder, child = self.session(SESSION, True)
            for _ in range(count - 1):
                self.assertEqual(child.stdout.read(1), b".")
                child.stdin.write(b"\n")
                child.stdin.flush()
            self.assertEqual(child.stdout.read(1), b".")
            self.kill(child)
            self.assertEqual(replayed(folder), plain[count], SESSION[count - 1])

    def test_at_any_moment(self):
        lines = [f"part('p{i % 2}', POINTS, CELLS)" if i % 3 == 0 else
                 f"group('p0', 'g{i % 5}', [{i % 2}])" if i % 3 == 1 else "undo()"
                 for i in range(300)]
        plain = self.plain(lines)
        chance = random.Random(1)
        for _ in range(6):
            folder, child = self.session(lines, False)
            first = len(child.stdout.read(1))
            time.sleep(chance.uniform(0, 0.2))
            finished = first + self.kill(child).count(b".")
            self.assertIn(replayed(folder), plain[finished:finished + 2])

    def test_within_a_line(self):
        """The journal's line of a command takes long to write: a part of it is no command."""
        lines = ["import numpy as np; points = np.arange(6e6).reshape(-1, 3)",
                 "part('large', points, CELLS)"]
        plain = self.plain(lines)
        for _ in range(3):
            folder, child = self.session(lines, True)
            journal = os.path.join(folder, "journal.py")
            child.stdout.read(1)
            size = os.path.getsize(journal)
            child.stdin.write(b"\n")
            child.stdin.flush()
            while os.path.getsize(journal) < size + 100000:
                pass
            self.kill(child)
            self.assertIn(replayed(folder), plain[1:])


class Hostile(Case):
    """Files that are whole, but no models: refused, and nothing has changed."""

    def test_mutated_models(self):
        folder = self.folder()
        run("\n".join(SESSION[:18]) + "\nsaveModel('sound.cae')", folder)
        sound = bytes_of(folder, "sound.cae")
        stream = io.BytesIO(sound)
        header, classes, roots = (cbor2.load(stream) for _ in range(3))

        def fields(index):
            _, _, base, own = classes[index]
            return (fields(base) if base is not None else []) + own

        def place(member, field):
            """Of a field in a member: its identities stand ahead of the fields."""
            return len(member) - len(fields(member[0])) + fields(member[0]).index(field)

        def write(name, root, index, field, change):
            """A file in which a field of a member is what `change` makes of it; without a field the
            list of the members."""
            stream = io.BytesIO(sound)
            parts = [cbor2.load(stream) for _ in range(3)]
            members = parts[2][root]
            if field is None:
                change(members)
            else:
                member = members[index]
                at = place(member, field)
                member[at] = change(member[at])
            parts[0] = cbor2.CBORTag(55799, parts[0])
            data = b"".join(cbor2.dumps(part) for part in parts)
            with open(os.path.join(folder, name), "wb") as file:
                file.write(data + b"\x44" + crc32c(data).to_bytes(4, "big"))

        def ints(*numbers):
            return cbor2.CBORTag(78, struct.pack(f"<{len(numbers)}i", *numbers))

        def doubles(*numbers):
            return cbor2.CBORTag(86, struct.pack(f"<{len(numbers)}d", *numbers))

        def mesh(place, block):
            return lambda stored: stored[:place] + [block] + stored[place + 1:]

        def always(value):
            return lambda stored: value

        cases = [
            ("parts", 1, "mesh", mesh(1, doubles(0, 0)), "incomplete point"),
            ("parts", 1, "mesh", mesh(1, doubles()), "points is empty"),
            ("parts", 1, "mesh", mesh(1, doubles(*[float("nan")] * 15)), "not finite"),
            ("parts", 1, "mesh", mesh(2, ints(0, 77)), "unknown type 77"),
            ("parts", 1, "mesh", mesh(2, ints(0, -1)), "unknown type -1"),
            ("parts", 1, "mesh", mesh(2, ints(*[3] * 100000)), "lacks nodes"),
            ("parts", 1, "mesh", mesh(2, ints(0)), "nodes without cells"),
            ("parts", 1, "mesh", mesh(3, ints(0, 1, 2, 3, 1, 2, 3, 5)), "cells[1][3]"),
            ("parts", 1, "mesh", mesh(3, ints(0, 1, 2, 3, 1, 2, 3, -1)), "cells[1][3]"),
            ("parts", 1, "groups", always([None, "first", ints(2)]), "does not fit"),
            ("parts", 1, "groups", always([None, "first", ints(1, 0)]), "does not fit"),
            ("parts", 1, "groups", always([None, "first", ints(0, 0)]), "does not fit"),
            ("parts", 1, "groups", always([None, "first"]), "Memento"),
            ("parts", 1, "nodeSets", always([None, "foot", ints(-1)]), "does not fit"),
            ("parts", 2, "fields", always([None, "f", [None, 0, 1, doubles(1)]]), "does not fit"),
            ("parts", 2, "fields", always([None, "f", [None, 0, 2, doubles(1)]]), "2 components"),
            ("parts", 2, "fields", always([None, "f", [None, 9, 1, doubles(1)]]), "position 9"),
            ("parts", 1, "materials", always([None, "first", "gold"]), "gold"),
            ("parts", 1, "name", always("lid"), "in use"),
            ("parts", 1, "name", always("a.b"), "invalid name"),
            ("parts", 0, None, lambda members: members.append(None), "."),
            ("parts", 0, None, lambda members: members.append(roots["steps"][1]), "none of the"),
            ("steps", 0, None, lambda members: members.append(roots["parts"][1]), "none of the"),
            ("steps", 1, "procedure", always(9), "procedure is 9"),
            ("steps", 1, "period", always(-1.0), "period"),
            ("loads", 1, "kind", always(77), "kind is 77"),
            ("loads", 1, "part", always("nowhere"), "nowhere"),
            ("loads", 1, "createdIn", always("push"), "is not made in the step"),
            ("loads", 1, "changes", always([None]), "is not made in the step"),
        ]
        names = [f"{i}.cae" for i in range(len(cases))]
        for name, (root, index, field, change, _) in zip(names, cases):
            write(name, root, index, field, change)
        write("same.cae", "parts", 1, "name", lambda name: name)
        self.assertEqual(bytes_of(folder, "same.cae"), sound)
        run(f"""
            openModel("sound.cae")
            plate = findPart("plate")
            before = state()
            for name, message in {list(zip(names, (case[-1] for case in cases)))!r}:
                error = raised(f"openModel({{name!r}})", Exception)
                assert message in error, (name, message, error)
                assert state() == before and plate.name == "plate", name
            """, folder)


if __name__ == "__main__":
    unittest.main()
