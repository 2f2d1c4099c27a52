#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""Puts small mistakes into the code, one at a time, and lists those that no test notices.

    tests/mutants/mutants.py                              200 mistakes over all wings, drawn with seed 1
    tests/mutants/mutants.py -n 40 -s 7 clprotocol os     others
    tests/mutants/mutants.py --list clsertty              what would be tried, without building

Works on a copy of the last commit in build/mutants, built as the preset release is, so that a compiler cache has most of
it; only the test programs that stand opposite a wing are built. For each mistake the tests of the file opposite run first,
then their whole program, and then the wing's others, each built only when nobody before it noticed anything. A mistake
counts as noticed when a test fails twice, or a program crashes or hangs. One that does not compile is replaced by another.
What can't be noticed by any test stands in equivalent.txt beside this file, with the reason. Run by hand: a wing takes
from two minutes up.
"""
import argparse
import io
import os
import pathlib
import random
import re
import subprocess
import sys
import tarfile
import time

ROOT = pathlib.Path(__file__).resolve().parents[2]
WINGS = {  # wing: its folder, and the test programs opposite
    "base": ("platform/base", ["base_test"]),
    "os": ("platform/os", ["os_test"]),
    "gcbase": ("platform/genicam/gcbase", ["gcbase_test"]),
    "genapi": ("platform/genicam/genapi", ["genapi_test"]),
    "clprotocol": ("platform/genicam/clprotocol", ["clprotocol_test", "clprotocol_library_test"]),
    "vanto": ("platform/vanto", ["vanto_base_test", "vanto_image_test"]),
    "plugin": ("VantoCLSer", ["clser_test", "clser_device_test", "stream_test"]),
    "templates": ("include/vanto/internal", ["vanto_internal_test", "clser_test"]),
    "gencp": ("camera/gencp", ["gencp_test", "driver_test"]),
    "clsertty": ("camera/clsertty", ["clsertty_test"]),
    "driver": ("camera/driver", ["driver_test", "driver_exports_test"]),
    "simulator": ("camera/simulator", ["simulator_test"]),
    "grabber": ("camera/grabber", ["grabber_test"]),
    "application": ("application", ["application_test"]),
    "gentl": ("gentl", ["gentl_test"]),
    "tools": ("tools", ["tools_output_test", "tools_configuration_test", "tools_system_test", "tools_description_test",
                        "tools_features_test", "tools_images_test", "tools_cameras_test", "vanto_cl_test"]),
}
WHOLE_SAMPLE = 200
LEAST_LIMIT = 20  # seconds for one test program; else five times what it takes without a mistake

NUMBER = re.compile(r"(?<![\w.'\"])(\d+)([uUlL]*)(?![\w.'])")
LOCK = re.compile(r"^\s*(?:const )?std::(?:lock_guard|scoped_lock)\b.*;")
STATEMENT = re.compile(r"^\s+(?:[\w:.\[\]*()]|->)+(?:\(.*\)|(?: [-+|&]?= .*)|\+\+|--);\s*(?://.*)?$")
# What makes no difference to see, or none that compiles: log texts, room made in advance, functions that are declared.
NO_STATEMENT = re.compile(r"^\s*(?:(?:return|throw|using|case|delete|else|goto|typedef|static_assert|default)\b|Log\()"
                          r"|[.>]reserve\(|= default;")
TEST = re.compile(r"^(?:TYPED_)?TEST(?:_[FP])?\((\w+),", re.M)
SWAP = re.compile(r"\b(?!min\(|max\(|equal\()(\w+)\(([\w.]+), ([\w.]+)\)")
TURNS = [(" < ", " <= "), (" <= ", " < "), (" > ", " >= "), (" >= ", " > "), (" == ", " != "), (" != ", " == "),
         (" && ", " || "), (" || ", " && "), ("return true;", "return false;"), ("return false;", "return true;"),
         ("(!", "("), (" + ", " - ")]


def code_of(line):
    """The line with texts, characters and comments blanked, so that positions stay."""
    blank = lambda found: " " * len(found.group())
    return re.sub(r'"(?:\\.|[^"\\])*"|\'(?:\\.|[^\'\\])*\'|//.*|/\*.*?\*/', blank, line)


def mistakes_in(line):
    """All changed forms of a line, each with what was done."""
    code = code_of(line)
    if not code.strip() or code.lstrip().startswith(("#", "*", "/*", "template", "static_assert", "virtual", "}  //")):
        return
    if LOCK.match(line):
        yield "lock taken away", ""
    elif STATEMENT.match(code) and code.count("(") == code.count(")") and not NO_STATEMENT.search(code):
        yield "statement dropped", ""
    for old, new in TURNS:
        for at in (found.start() for found in re.finditer(re.escape(old), code)):
            yield f"'{old.strip()}' turned", line[:at] + new + line[at + len(old):]
    for found in NUMBER.finditer(code):
        yield "constant by one", line[:found.start()] + str(int(found.group(1)) + 1) + line[found.end(1):]
    for found in SWAP.finditer(code):
        function, first, second = found.groups()
        if first != second:
            yield "arguments swapped", line[:found.start()] + f"{function}({second}, {first})" + line[found.end():]


def equivalents():
    known = set()
    for line in (pathlib.Path(__file__).parent / "equivalent.txt").read_text().splitlines():
        if line.strip() and not line.startswith("#"):
            known.add(tuple(part.strip() for part in line.split(" | ")[:3]))
    return known


def built_lines(text):
    """The lines that this system's builds have, with their numbers."""
    left_out = []  # for each condition that is open: whether its lines are left out
    for number, line in enumerate(text.splitlines()):
        if line.startswith("#if"):
            left_out.append(bool(re.match(r"#if(?:def| defined\()\s*\(?(?:_WIN32|VANTO_LOCK_ORDER)", line)))
        elif line.startswith("#else") and left_out:
            left_out[-1] = not left_out[-1]
        elif line.startswith("#endif") and left_out:
            left_out.pop()
        elif not any(left_out):
            yield number, line


def candidates(tree, folder, seed):
    """All mistakes of a tree's folder in the order in which they are tried; which are equivalent does not change it."""
    known = equivalents()
    found = []
    for path in sorted((tree / folder).rglob("*")):
        name = str(path.relative_to(tree))
        if path.suffix not in (".cpp", ".h") or "/windows/" in name or "/interface/" in name:
            continue
        for number, line in built_lines(path.read_text()):
            for what, changed in mistakes_in(line):
                found.append((name, number, line, what, changed))
    random.Random(seed).shuffle(found)
    return [mistake for mistake in found if (mistake[0], mistake[2].strip(), mistake[3]) not in known]


def run(command, limit=None, **options):
    """Whether a command succeeds, None for one that takes too long; and what it printed."""
    with subprocess.Popen(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, start_new_session=True, **options) as job:
        try:
            output = job.communicate(timeout=limit)[0]
            return job.returncode == 0, output.decode(errors="replace")
        except subprocess.TimeoutExpired:
            os.killpg(job.pid, 9)
            return None, ""


class Copy:
    """The tree in which mistakes are made."""

    def __init__(self, jobs):
        self.tree = ROOT / "build" / "mutants"
        self.build = self.tree / "build" / "release"
        self.jobs = jobs
        self.environment = dict(os.environ, CCACHE_BASEDIR=str(self.tree), CCACHE_NOHASHDIR="1")
        self.tree.mkdir(parents=True, exist_ok=True)
        archive = subprocess.run(["git", "archive", "HEAD"], cwd=ROOT, check=True, stdout=subprocess.PIPE).stdout
        self._update(archive)
        # Test programs are not asked for their tests when they are linked: a mistake may keep them from answering.
        done, output = run(["cmake", "--preset", "release", "-DVANTO_BUILD_PYTHON=OFF",
                            "-DCMAKE_GTEST_DISCOVER_TESTS_DISCOVERY_MODE=PRE_TEST"], cwd=self.tree, env=self.environment)
        if not done:
            sys.exit(output)

    def _update(self, archive):
        """Writes only files that differ, so that little is built again."""
        with tarfile.open(fileobj=io.BytesIO(archive)) as files:
            names = set()
            for member in files.getmembers():
                target = self.tree / member.name
                if member.isdir():
                    target.mkdir(parents=True, exist_ok=True)
                elif member.isfile():
                    names.add(target)
                    content = files.extractfile(member).read()
                    if not target.is_file() or target.read_bytes() != content:
                        target.write_bytes(content)
                        target.chmod(member.mode)
        for path in self.tree.rglob("*"):
            if path.is_file() and path not in names and self.tree / "build" not in path.parents:
                path.unlink()

    def make(self, programs):
        return run(["nice", "ninja", "-C", self.build, f"-j{self.jobs}", *programs], env=self.environment)

    def fails(self, program, limit, tests="*"):
        """The first test that fails, "hangs" or "crashes"; empty when all pass."""
        passed, output = run([self.build / "bin" / program, "--gtest_brief=1", "--gtest_fail_fast", f"--gtest_filter={tests}"],
                             limit)
        if passed:
            return ""
        failed = re.search(r"\[  FAILED  \] ([^\s,]+)", output)
        return failed.group(1) if failed else ("hangs" if passed is None else "crashes")

    def is_noticed(self, programs, limit, tests="*"):
        """What fails, and again when it is tried alone; empty for a mistake that survives."""
        for program in programs:
            failed = self.fails(program, limit, tests)
            if failed and ("." not in failed or self.fails(program, limit, failed)):
                return failed
        return ""

    def opposite(self, name):
        """A filter for the tests of the files that stand opposite; none without such a file."""
        path = pathlib.Path(name)
        folder = self.tree / "tests" / path.parent
        suites = {suite for file in folder.glob(f"{path.stem}*_test.cpp") for suite in TEST.findall(file.read_text())}
        return ":".join(f"{suite}.*:*/{suite}.*:{suite}/*" for suite in sorted(suites))

    def holds(self, program, tests):
        """Whether a program, as it was built last, has such tests."""
        listed = run([self.build / "bin" / program, "--gtest_list_tests", f"--gtest_filter={tests}"], LEAST_LIMIT)
        return "\n  " in listed[1]

    def is_noticed_by(self, program, limit, first):
        """The same for one program, which is built before; None when it does not compile."""
        if not self.make([program])[0]:
            return None
        return (first and self.is_noticed([program], limit, first)) or self.is_noticed([program], limit)

    def tries(self, mistake, programs, limit):
        """None when it does not compile, else who has noticed it; empty for nobody."""
        name, number, _, _, changed = mistake
        path = self.tree / name
        text = path.read_text()
        lines = text.splitlines()
        lines[number] = changed
        first = self.opposite(name)
        # No program is built in vain: first come those that have the tests opposite.
        in_turn = sorted(programs, key=lambda program: not (first and self.holds(program, first)))
        path.write_text("\n".join(lines) + "\n")
        try:
            for program in in_turn:
                who = self.is_noticed_by(program, limit, first)
                if who is None or who:
                    return who
            return ""
        finally:
            path.write_text(text)


def examine(copy, wing, count, seed):
    folder, programs = WINGS[wing]
    done, output = copy.make(programs)
    begin = time.monotonic()
    failed = copy.is_noticed(programs, None) if done else "the build"
    if failed:
        sys.exit(f"{wing}: {failed} fails without any mistake\n{output[-2000:]}")
    limit = max(LEAST_LIMIT, 5 * (time.monotonic() - begin))
    pool = candidates(copy.tree, folder, seed)
    tried, survivors = 0, []
    for mistake in pool:
        if tried == count:
            break
        name, number, line, what, changed = mistake
        who = copy.tries(mistake, programs, limit)
        if who is None:
            continue
        tried += 1
        if not who:
            survivors.append(mistake)
        print(f"{'caught  ' if who else 'SURVIVES'} {name}:{number + 1}: {what}: {changed.strip() or line.strip()}", who, flush=True)
    return tried, survivors


def figure(wing, tried, survivors):
    """The line of a wing in the table at the end."""
    caught = tried - len(survivors)
    return f"{wing}: {caught} of {tried} caught" + (f" ({100 * caught // tried} of 100)" if tried else "")


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("wings", nargs="*", metavar="WING", help=f"all of {', '.join(WINGS)}")
    parser.add_argument("-n", type=int, help=f"mistakes a wing ({WHOLE_SAMPLE} over all wings)")
    parser.add_argument("-s", type=int, default=1, help="seed of the sample (1)")
    parser.add_argument("-j", type=int, default=os.cpu_count() or 2, help="jobs of a build")
    parser.add_argument("--list", action="store_true", help="only list the sample")
    arguments = parser.parse_args()
    arguments.wings = arguments.wings or list(WINGS)
    arguments.n = arguments.n or -(-WHOLE_SAMPLE // len(WINGS))
    for wing in set(arguments.wings) - set(WINGS):
        parser.error(f"there is no wing {wing}")
    if arguments.list:
        for wing in arguments.wings:
            for name, number, line, what, _ in candidates(ROOT, WINGS[wing][0], arguments.s)[:arguments.n]:
                print(f"{name}:{number + 1}: {what}: {line.strip()}")
        return 0
    copy = Copy(arguments.j)
    survivors, table = [], []
    for wing in arguments.wings:
        tried, survived = examine(copy, wing, arguments.n, arguments.s)
        survivors += survived
        table.append(figure(wing, tried, survived))
        print(table[-1], flush=True)
    for name, number, line, what, changed in survivors:
        print(f"\n{name}:{number + 1}: {what}\n- {line.strip()}\n+ {changed.strip()}")
    print("\n" + "\n".join(table))
    return 1 if survivors else 0


if __name__ == "__main__":
    sys.exit(main())
