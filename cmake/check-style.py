#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""What the formatter does not see: cmake/check-style.py [--repair] FILE...

Bodies of one line have no braces. The formatter of clang 14 can take them away, but takes those of lambdas as well. Left
alone are bodies of several lines, those beside an else, those below a condition of several lines, and GoogleTest's macros
below an if, whose own else compilers warn of.

Enumerators are kPascalCase, but for those that C interfaces and the SDK's and GenICam's headers spell.

A lock has a name in the order of locks, which docs/lock-order.md lists, but for those of what stands on the SDK's headers
only, as other people's programs do.
"""
import re
import sys

HEAD = re.compile(r"^( *)(if|if constexpr|for|while) \(.*\) \{$")
HAS_AN_ELSE = re.compile(r"^(EXPECT|ASSERT)_\w+\(|^(GTEST_SKIP|FAIL|SUCCEED|ADD_FAILURE)\w*\(")
NESTED = re.compile(r"^(if|for|while|switch|do|try|case|default|//|#|\})\b|^(//|#|\})")


def bodies_with_braces(lines):
    """Indexes of the lines that open such a body."""
    for at in range(len(lines) - 2):
        head = HEAD.match(lines[at])
        if not head or lines[at + 2] != head.group(1) + "}":
            continue
        body = lines[at + 1].strip()
        is_outer_macro = lines[at].endswith("\\")
        if body.endswith(";") and not NESTED.match(body) and not HAS_AN_ELSE.match(body) and not is_outer_macro:
            yield at


SPELT_BY_OTHERS = ("platform/genicam/", "tests/platform/genicam/", "platform/vanto/include/", "gentl/interface/")
ENUMERATION = re.compile(r"\benum\b(?: class| struct)?(?: \w+)?(?: : [\w:]+)? *\{([^}]*)\}")


def strange_enumerators(path, text):
    """Names of enumerators that are not kPascalCase."""
    if path.startswith(SPELT_BY_OTHERS) or path.endswith(".c"):
        return
    for enumeration in ENUMERATION.finditer(re.sub(r"//[^\n]*", "", text)):
        for enumerator in filter(str.strip, enumeration.group(1).split(",")):
            name = enumerator.split("=")[0].strip()
            if not re.match(r"k[A-Z0-9]", name):
                yield name


STANDS_ON_THE_SDK = ("camera/grabber/", "python/", "platform/vanto/include/", "platform/genicam/genapi/include/")
NAMED_WINGS = ("platform/", "include/", "VantoCLSer/", "camera/", "application/", "gentl/", "tools/")
LOCK = re.compile(r"^ *(?:(?:mutable|static|constinit) )*std::(?:recursive_|shared_|timed_)*mutex (\w+);", re.M)
LOCK_NAME = re.compile(r'\bLockName \w+[({]&(\w+),\s*"([^"]+)"')


def faults_of_locks(path, text, listed):
    """Locks without a name, and names that the page does not list."""
    if not path.startswith(NAMED_WINGS) or path.startswith(STANDS_ON_THE_SDK):
        return
    names = LOCK_NAME.findall(text)
    locks = LOCK.findall(text)
    for lock in sorted({lock for lock in locks if locks.count(lock) > [named for named, _ in names].count(lock)}):
        yield f"the lock {lock} has no os::LockName"
    for _, name in names:
        if f'"{name}"' not in listed:
            yield f'docs/lock-order.md does not list "{name}"'


def main(arguments):
    with open("docs/lock-order.md", encoding="utf-8") as page:
        listed = page.read()
    repair = "--repair" in arguments
    found = 0
    for path in (argument for argument in arguments if argument != "--repair"):
        with open(path, encoding="utf-8") as file:
            lines = file.read().split("\n")
        strange = [] if repair else list(strange_enumerators(path, "\n".join(lines)))
        for name in strange:
            print(f"{path}: the enumerator {name} is not kPascalCase")
        faults = [] if repair else list(faults_of_locks(path, "\n".join(lines), listed))
        for fault in faults:
            print(f"{path}: {fault}")
        found += len(strange) + len(faults)
        heads = list(bodies_with_braces(lines))
        found += len(heads)
        if repair and heads:
            for at in reversed(heads):
                lines[at] = lines[at][:-2]
                del lines[at + 2]
            with open(path, "w", encoding="utf-8") as file:
                file.write("\n".join(lines))
        elif not repair:
            for at in heads:
                print(f"{path}:{at + 1}: a body of one line has no braces; cmake/check-style.py --repair takes them away")
    return 1 if found and not repair else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
