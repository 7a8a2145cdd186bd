#!/usr/bin/env python3
"""Makes the table and the page of what the benchmarks measured: report.py FOLDER [--write DOCS]

FOLDER has what scripts/bench.sh left: host-JDK-N.json, empty-JDK-N.json, launcher-JDK-N.json and texts-JDK-N.json of each process, and
facts.json. Prints a table. With --write, performance.md and performance.svg are written into the folder DOCS.
"""
import glob
import json
import os
import re
import statistics
import sys
import textwrap
from xml.sax.saxutils import escape

HERE = os.path.dirname(os.path.abspath(__file__))
GROUPS = {
    "calls": "Calls and fields",
    "objects": "Objects",
    "texts": "Texts",
    "exceptions": "Exceptions",
    "containers": "Containers and option arrays",
    "empty vm": "Calls, objects and texts with a VM that does nothing",
    "launcher": "The launcher",
    "java members": "`torvan::java`: members",
    "java texts": "`torvan::java`: texts",
    "java arrays": "`torvan::java`: arrays",
    "java callbacks": "`torvan::java`: C++ called from Java",
    "java errors": "`torvan::java`: errors",
    "java runtimes": "`torvan::java`: runtimes",
}


class Figure:
    """What one way took: medians over processes; a ratio is that of the medians in one process."""

    def __init__(self):
        self.times, self.ratios, self.overs, self.blocks = [], [], [], 0

    def time(self):
        return statistics.median(self.times)

    def ratio(self):
        return statistics.median(self.ratios)

    def over(self):
        return statistics.median(self.overs)


def figures(processes):
    """{(group, row): {way: Figure}} of the measurements of several processes with one JDK, in the order of the rows."""
    found = {}
    for process in processes:
        for row in process["rows"]:
            ways = found.setdefault((row["group"], row["row"]), {})
            first = statistics.median(row["ways"][0]["ns"])
            for way in row["ways"]:
                figure = ways.setdefault(way["way"], Figure())
                time = statistics.median(way["ns"])
                figure.times.append(time)
                figure.ratios.append(time / first)
                figure.overs.append(time - first)
                figure.blocks = way["blocks"]
    return found


def load(folder):
    """{JDK: figures}, the JDKs in the order of their numbers."""
    paths = {}
    for path in glob.glob(os.path.join(folder, "*-*-*.json")):
        jdk = os.path.basename(path).split("-")[1]
        paths.setdefault(jdk, []).append(path)
    measured = {}
    for jdk in sorted(paths, key=lambda name: int(name) if name.isdigit() else 0):
        measured[jdk] = figures([read(path) for path in sorted(paths[jdk])])
    return measured


def read(path):
    with open(path, encoding="utf-8") as file:
        return json.load(file)


def verdict(budget, figure):
    """What was measured, as the budget counts it, and whether it is met."""
    kind = budget.get("kind", "ratio")
    value = {"ratio": figure.ratio, "over": figure.over, "time": figure.time, "ms": lambda: figure.time() / 1e6}[kind]()
    # A figure is compared as it is shown.
    shown = f"{value:.2f}" if kind == "ratio" else f"{value:.1f} {'ms' if kind == 'ms' else 'ns'}"
    return shown, float(shown.split()[0]) <= budget["most"]


def bound(budget):
    kind = budget.get("kind", "ratio")
    most = budget["most"]
    return {"ratio": f"{most:.2f}", "over": f"{most:g} ns more", "time": f"{most:g} ns", "ms": f"{most:g} ms"}[kind]


def nanoseconds(value):
    if value >= 1e6:
        return f"{value / 1e6:.1f} ms"
    if value >= 1e4:
        return f"{value / 1e3:.1f} µs"
    return f"{value:.1f} ns"


def budget_rows(measured, budgets):
    """(group, row, way, bound, {JDK: (shown, met)}) of each budget that something was measured for."""
    rows = []
    for budget in budgets:
        cells = {}
        for jdk, found in measured.items():
            figure = found.get((budget["group"], budget["row"]), {}).get(budget["way"])
            if figure is not None and budget.get("java", jdk) == jdk:
                cells[jdk] = verdict(budget, figure)
        if cells:
            rows.append((budget["group"], budget["row"], budget["way"], bound(budget), cells))
    return rows


def build_rows(facts, budgets):
    """(title, bound, shown, met) of loading, size and build."""
    rows = []
    for name, budget in budgets.items():
        if name == "clean build":
            values = [(f"{budget['title']}, `{target}` ({build['processor']:.0f} s of processor time)", build["elapsed"])
                      for target, build in facts["builds"].items()]
        else:
            value = facts["load"]["own"] - facts["load"]["bare"] if name == "load" else sum(facts["sizes"].values())
            values = [(budget["title"], value / (1e3 if name == "load" else 1024))]
        for title, value in values:
            rows.append((title, f"{budget['most']} {budget['unit']}", f"{value:.2f} {budget['unit']}",
                         value <= budget["most"]))
    return rows


def table(head, rows):
    lines = ["| " + " | ".join(head) + " |", "|" + "---|" * len(head)]
    return lines + ["| " + " | ".join(row).replace("<", "&lt;") + " |" for row in rows] + [""]


def paragraph(text):
    return textwrap.wrap(text, 130, break_long_words=False, break_on_hyphens=False)


def marked(cell):
    if cell is None:
        return ""
    shown, met = cell
    return shown if met else f"**{shown}** missed"


def page(measured, facts, budgets, notes):
    jdks = list(measured)
    rows = budget_rows(measured, budgets["rows"])
    lines = ["# Performance", "",
             "What the library costs beside the same work by hand. This page is made by `scripts/bench.sh`; it is not edited by hand.",
             "",
             *paragraph(f"Measured on {facts['date']}: {facts['machine']}; {facts['system']}; {facts['compiler']}, "
                        f"`{facts['build type']}`; " + ", ".join(facts["javas"][jdk] for jdk in jdks) + "."),
             "", *paragraph(facts["settings"]), "", *busy(facts), "![Ratio to the same work by hand](performance.svg)", "", "## Budgets", ""]
    for jdk in jdks:
        cells = [row[4][jdk] for row in rows if jdk in row[4]]
        lines.append(f"- Java {jdk}: {sum(met for _, met in cells)} of {len(cells)} are met.")
    lines += ["", "A budget is a ratio to the first way of its row below, unless it says nanoseconds or milliseconds.", ""]
    lines += table(["", "", "", "budget"] + [f"Java {jdk}" for jdk in jdks],
                   [[GROUPS[group], row, way, most] + [marked(cells.get(jdk)) for jdk in jdks]
                    for group, row, way, most, cells in rows])
    lines += notes + ["## Start-up and size", ""]
    lines += table(["", "budget", "measured"],
                   [[title, most, marked((shown, met))] for title, most, shown, met in build_rows(facts, budgets["build"])])
    lines += [f"Loading takes {facts['load']['own'] / 1e3:.2f} ms with `Initialize`, and {facts['load']['bare'] / 1e3:.2f} ms for "
              f"a library with nothing in it: medians of {facts['load']['times']} processes each.", ""]
    lines += table(["library", "stripped", "relocations", "sources with static constructors"],
                   [[name, f"{size / 1024:.1f} KiB", str(facts["relocations"][name]),
                     ", ".join(f"`{source}`" for source in facts["constructors"][name]) or "none"]
                    for name, size in facts["sizes"].items()])
    lines += ["## Everything measured", "",
              *paragraph("The other ways of a row are compared with its first. Times are of one operation; blocks are those that the "
                         "operation takes from the heap, the VM's own included."), ""]
    for group, title in GROUPS.items():
        keys = [key for key in dict.fromkeys(key for found in measured.values() for key in found) if key[0] == group]
        if not keys:
            continue
        lines += [f"### {title}", ""]
        head = ["", "", "blocks"]
        for jdk in jdks:
            head += [f"Java {jdk}", "ratio", "lowest to highest"]
        body = []
        for key in keys:
            ways = dict.fromkeys(way for found in measured.values() for way in found.get(key, {}))
            for i, way in enumerate(ways):
                some = [found[key][way] for found in measured.values() if way in found.get(key, {})]
                cells = [key[1] if i == 0 else "", way, f"{some[0].blocks:.1f}".replace(".0", "")]
                for jdk in jdks:
                    figure = measured[jdk].get(key, {}).get(way)
                    if figure is None:
                        cells += ["", "", ""]
                    elif i == 0:
                        cells += [nanoseconds(figure.time()), "", ""]
                    else:
                        cells += [nanoseconds(figure.time()), f"{figure.ratio():.2f}",
                                  f"{min(figure.ratios):.2f} to {max(figure.ratios):.2f}"]
                body.append(cells)
        lines += table(head, body)
    return "\n".join(lines).rstrip() + "\n"


def busy(facts):
    """A warning when others worked on the machine: the programs of a run keep one core busy."""
    if facts["busy"] < facts["cores"]:
        return []
    return [*paragraph(f"**The machine was busy**: a load of {facts['busy']:.1f} on {facts['cores']} cores. A ratio can be off by a "
                       "tenth and more; what lies close to its budget is not decided."), ""]


def picture(measured, budgets):
    """A chart of the rows with a budget that is a ratio: a bar for each JDK, and a line where the budget is."""
    colours = ["#2f6fb0", "#e08a1e", "#4c9a52", "#9a5ab0"]
    rows = [row for row in budget_rows(measured, budgets) if not row[3].endswith(("ns", "ms", "more"))]
    left, width, bar, gap, top = 430, 560, 9, 8, 46
    height = len(measured) * bar + gap
    highest = max([1.25] + [float(shown) for row in rows for shown, _ in row[4].values()])
    scale = width / (highest * 1.08)
    total = top + len(rows) * height + 34
    lines = [f'<svg xmlns="http://www.w3.org/2000/svg" width="{left + width + 70}" height="{total}" '
             f'viewBox="0 0 {left + width + 70} {total}" font-family="sans-serif" font-size="12">',
             '<rect width="100%" height="100%" fill="#ffffff"/>',
             '<text x="12" y="20" font-size="15" fill="#222222">Time, with the same work by hand as 1 (shorter is faster)</text>']
    for i, jdk in enumerate(measured):
        lines.append(f'<rect x="{left + i * 90}" y="28" width="12" height="10" fill="{colours[i % 4]}"/>'
                     f'<text x="{left + 17 + i * 90}" y="38" fill="#222222">Java {escape(jdk)}</text>')
    legend = left + len(measured) * 90
    lines.append(f'<line x1="{legend}" y1="27" x2="{legend}" y2="39" stroke="#c02020" stroke-width="2"/>'
                 f'<text x="{legend + 6}" y="38" fill="#222222">budget</text>')
    bottom = top + len(rows) * height
    one = left + scale
    lines.append(f'<line x1="{one:.1f}" y1="{top - 4}" x2="{one:.1f}" y2="{bottom}" stroke="#888888" stroke-dasharray="3,3"/>'
                 f'<text x="{one - 3:.1f}" y="{bottom + 16}" fill="#555555">1</text>')
    for i, (group, row, way, most, cells) in enumerate(rows):
        y = top + i * height
        title = f"{GROUPS[group].replace('`', '').split(':')[0]}: " if group.startswith("java") else ""
        lines.append(f'<text x="{left - 8}" y="{y + height / 2 + 1:.1f}" text-anchor="end" fill="#222222">'
                     f'{escape(title + row + ", " + way)}</text>')
        for n, jdk in enumerate(measured):
            if jdk not in cells:
                continue
            value = float(cells[jdk][0])
            lines.append(f'<rect x="{left}" y="{y + n * bar}" width="{value * scale:.1f}" height="{bar - 1}" fill="{colours[n % 4]}"/>'
                         f'<text x="{left + value * scale + 4:.1f}" y="{y + n * bar + 8}" font-size="9" fill="#222222">{value:.2f}</text>')
        x = left + float(most) * scale
        lines.append(f'<line x1="{x:.1f}" y1="{y - 2}" x2="{x:.1f}" y2="{y + height - gap + 1}" stroke="#c02020" stroke-width="2"/>')
    return "\n".join(lines + ["</svg>"]) + "\n"


def terminal(measured, budgets):
    jdks = list(measured)
    lines = [f"{'':66}{'budget':>12}" + "".join(f"{'Java ' + jdk:>16}" for jdk in jdks)]
    for group, row, way, most, cells in budget_rows(measured, budgets):
        line = f"{group + ': ' + row + ', ' + way:66}{most:>12}"
        for jdk in jdks:
            shown, met = cells.get(jdk, ("", True))
            line += f"{shown + ('' if met else ' !'):>16}"
        lines.append(line)
    return "\n".join(lines)


def main(arguments):
    if len(arguments) not in (1, 3) or (len(arguments) == 3 and arguments[1] != "--write"):
        sys.exit(__doc__)
    budgets = read(os.path.join(HERE, "budgets.json"))
    measured = load(arguments[0])
    if not measured:
        sys.exit(f"report.py: {arguments[0]} has no measurements")
    print(terminal(measured, budgets["rows"]))
    if len(arguments) == 3:
        with open(os.path.join(HERE, "notes.md"), encoding="utf-8") as file:
            notes = file.read().rstrip().splitlines() + [""]
        facts = read(os.path.join(arguments[0], "facts.json"))
        text = page(measured, facts, budgets, notes)
        own = re.search(r"/(work|home|root|tmp|build)/", text)
        if own:
            sys.exit(f"report.py: the page would have a path of this machine: {own.group()}")
        for name, content in (("performance.md", text), ("performance.svg", picture(measured, budgets["rows"]))):
            with open(os.path.join(arguments[2], name), "w", encoding="utf-8") as file:
                file.write(content)


if __name__ == "__main__":
    main(sys.argv[1:])
