#!/usr/bin/env python3
"""Compares what the compiler makes of the classes with the published layouts.

check_layout.py LAYOUTS COMPILER ARGUMENT...: the arguments compile a source file that uses every class. Prints each
difference; the exit code is 1 if there is one. Every pair of neighbouring bases, fields and slots is also swapped in the
published table, which must be noticed each time: a check that cannot fail proves nothing.
"""
import re
import subprocess
import sys


class Layout:
    def __init__(self, size):
        self.size = size
        self.bases = []
        self.fields = []  # (offset, type, name)
        self.slots = None


def unqualified(kind):
    """A field's type without the classes that it is nested in: compilers differ in whether they print them."""
    return re.sub(r"(\w+(<[^<>]*>)?::)+", "", kind)


def published(path):
    """The layouts of the table, by class."""
    layouts, tables, current = {}, {}, None
    with open(path, encoding="utf-8") as lines:
        for line in lines:
            line = line.split("#")[0].rstrip()
            words = line.split()
            if not words:
                continue
            if words[0] == "slots":
                current = tables.setdefault(words[1], [])
            elif words[0] == "class":
                name, size, slots = re.fullmatch(r"class (.+?) (\d+)(?: (\w+))?", line).groups()
                current = layouts[name] = Layout(int(size))
                current.slots = list(tables[slots]) if slots else None
            elif isinstance(current, list):
                current.append(line.strip())
            elif words[1] == ":":
                current.bases.append((int(words[0]), words[2]))
            else:
                offset, kind, name = re.fullmatch(r"\s*(\d+) (.+), (\w+)", line).groups()
                current.fields.append((int(offset), unqualified(kind), name))
    return layouts


def plain(text):
    """A type without namespaces and class keys, as the table writes it."""
    text = re.sub(r"\b(class|struct|enum) ", "", text)
    text = re.sub(r"\b([a-z]\w*|RX|Place)::", "", text)
    return text.replace("_Bool", "bool").replace("(__cdecl *)", "(*)")


def compiled(command):
    """The layouts that the compiler prints, by class."""
    options = ["-emit-llvm-only", "-fdump-record-layouts", "-fdump-vtable-layouts"]
    command = command[:1] + [word for option in options for word in ("-Xclang", option)] + command[1:]
    done = subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True, check=False)
    if done.returncode != 0:
        sys.exit("check_layout.py: the classes do not compile\n" + done.stderr)

    layouts, tables = {}, {}
    for block in done.stdout.split("*** Dumping AST Record Layout")[1:]:
        rows = re.findall(r"^ +(\d+) \| ( *)(.*)$", block.split("*** Dumping")[0], re.M)
        size = re.search(r"sizeof=(\d+)", block)
        if not rows or not size:
            continue
        layout = layouts[plain(rows[0][2])] = Layout(int(size.group(1)))
        for offset, indentation, text in rows[1:]:
            if text.endswith("vftable pointer)"):
                if len(indentation) == 2:
                    layout.fields.append((int(offset), "(virtual functions)", ""))
            elif len(indentation) != 2:
                continue
            elif re.search(r"base\)( \(empty\))?$", text):
                layout.bases.append((int(offset), plain(text).split(" (")[0]))
            else:
                kind, name = text.rsplit(" ", 1)
                layout.fields.append((int(offset), unqualified(plain(kind)), name))
    for block in done.stdout.split("VFTable for ")[1:]:
        rows = re.findall(r"^ +\d+ \| (.*)$", block.split("VFTable indices")[0], re.M)
        slots = [re.sub(r" \[.*\]$", "", plain(row)) for row in rows[1:]]
        slots = ["~" if "~" in slot else re.sub(r"\b\w+::(\w+\()", r"\1", slot) for slot in slots]
        tables[plain(rows[0]).removesuffix(" RTTI")] = slots
    for name, slots in tables.items():
        if name in layouts:
            layouts[name].slots = slots
    return layouts


def differences(name, expected, actual):
    if actual is None:
        return [f"{name}: the compiler has not seen it"]
    found = []
    # A class that brings its own table has the pointer to it in front of all bases and fields.
    fields = list(expected.fields)
    if expected.slots is not None and all(offset > 0 for offset, _ in expected.bases):
        fields.insert(0, (0, "(virtual functions)", ""))
    for what, wanted, got in [("size", expected.size, actual.size), ("bases", expected.bases, actual.bases),
                              ("fields", fields, actual.fields), ("slots", expected.slots, actual.slots)]:
        if wanted != got:
            found.append(f"{name}: {what}\n  published {wanted}\n  compiled  {got}")
    return found


def unnoticed_swaps(name, expected, actual):
    """Swaps neighbours in the published layout. Returns the swaps that make no difference, and the number of all."""
    count, unnoticed = 0, []
    for rows in (expected.bases, expected.fields, expected.slots or []):
        for i in range(len(rows) - 1):
            first, second = rows[i], rows[i + 1]
            if rows is expected.slots:
                rows[i], rows[i + 1] = second, first
            else:  # the offsets stay
                rows[i], rows[i + 1] = (first[0],) + second[1:], (second[0],) + first[1:]
            count += 1
            if not differences(name, expected, actual):
                unnoticed.append(f"{name}: it would go unnoticed that {first} and {second} change places")
            rows[i], rows[i + 1] = first, second
    return count, unnoticed


def main():
    expected, actual = published(sys.argv[1]), compiled(sys.argv[2:])
    found, swaps, slots = [], 0, 0
    for name, layout in expected.items():
        found += differences(name, layout, actual.get(name))
        slots += len(layout.slots or [])
    for name, layout in expected.items():
        if not found:
            count, unnoticed = unnoticed_swaps(name, layout, actual[name])
            swaps += count
            found += unnoticed
    print("\n".join(found))
    fields = sum(len(layout.fields) for layout in expected.values())
    print(f"{len(expected)} classes, {fields} fields, {slots} slots, {swaps} planted swaps: {len(found)} differences")
    sys.exit(1 if found else 0)


main()
