#!/usr/bin/env python3
"""Tests the page that report.py makes, with made-up measurements."""
import os
import sys
import unittest
import xml.etree.ElementTree

sys.dont_write_bytecode = True
import report

BUDGETS = {
    "rows": [
        {"group": "calls", "row": "a", "way": "narrow", "most": 1.03},
        {"group": "calls", "row": "a", "way": "wide", "most": 1.06},
        {"group": "objects", "row": "b", "way": "copy", "most": 2, "kind": "over"},
        {"group": "objects", "row": "b", "way": "copy", "most": 5, "kind": "time"},
        {"group": "texts", "row": "c", "way": "narrow", "most": 0.5, "java": "17"},
        {"group": "launcher", "row": "d", "way": "search", "most": 50, "kind": "ms"},
        {"group": "texts", "row": "not measured", "way": "narrow", "most": 0.5},
    ],
    "build": {
        "load": {"title": "Load", "unit": "ms", "most": 1},
        "size": {"title": "Size", "unit": "KiB", "most": 320},
        "clean build": {"title": "Build", "unit": "s", "most": 60},
    },
}
FACTS = {
    "busy": 1.9, "cores": 2, "date": "2001-02-03", "machine": "a machine", "system": "a system", "compiler": "a compiler", "build type": "Release",
    "javas": {"8": "Eight", "17": "Seventeen"}, "settings": "Settings.",
    "load": {"own": 400.0, "bare": 100.0, "times": 9}, "sizes": {"a.so": 327680, "b.so": 1024},
    "relocations": {"a.so": 3, "b.so": 4}, "constructors": {"a.so": ["A.cpp"], "b.so": []}, "builds": {"linux": {"elapsed": 61.0, "processor": 99.6}},
}


def process(*rows):
    return {"rows": [{"group": group, "row": row, "elapsed": False,
                      "ways": [{"way": way, "blocks": blocks, "ns": times} for way, blocks, times in ways]}
                     for group, row, ways in rows]}


def measured():
    a = ("calls", "a", [("raw", 0, [500, 100, 90]), ("narrow", 2, [103, 900, 1]), ("wide", 2.5, [107, 107, 107])])
    b = ("objects", "b", [("raw", 0, [3, 3, 3]), ("copy<x>", 0, [4]), ("copy", 0, [5.04, 5.04, 5.04])])
    c = ("texts", "c", [("raw", 1, [10]), ("narrow", 1, [6])])
    d = ("launcher", "d", [("raw", 1, [1e6]), ("search", 1, [50.06e6])])
    slow = ("calls", "a", [("raw", 0, [200]), ("narrow", 2, [260]), ("wide", 2.5, [300])])
    slower = ("calls", "a", [("raw", 0, [200]), ("narrow", 2, [300]), ("wide", 2.5, [320])])
    return {"8": report.figures([process(a, b, c)]), "17": report.figures([process(a, b, c, d), process(slower), process(slow)])}


class ReportTest(unittest.TestCase):
    def test_a_ratio_is_the_median_over_processes_of_the_ratio_of_medians_in_one(self):
        figure = measured()["17"]["calls", "a"]["narrow"]
        self.assertEqual(figure.ratios, [1.03, 1.5, 1.3])
        self.assertEqual((figure.ratio(), figure.time(), figure.over()), (1.3, 260, 60))

    def test_a_budget_is_met_up_to_its_bound_as_it_is_shown(self):
        rows = report.budget_rows(measured(), BUDGETS["rows"])
        self.assertEqual([(row[1], row[2], row[3], row[4]) for row in rows], [
            ("a", "narrow", "1.03", {"8": ("1.03", True), "17": ("1.30", False)}),
            ("a", "wide", "1.06", {"8": ("1.07", False), "17": ("1.50", False)}),
            ("b", "copy", "2 ns more", {"8": ("2.0 ns", True), "17": ("2.0 ns", True)}),
            ("b", "copy", "5 ns", {"8": ("5.0 ns", True), "17": ("5.0 ns", True)}),
            ("c", "narrow", "0.50", {"17": ("0.60", False)}),
            ("d", "search", "50 ms", {"17": ("50.1 ms", False)}),
        ])

    def test_the_page_says_what_was_missed(self):
        text = report.page(measured(), FACTS, BUDGETS, ["A note.", ""])
        for line in ("- Java 8: 3 of 4 are met.", "- Java 17: 2 of 6 are met.",
                     "| Calls and fields | a | narrow | 1.03 | 1.03 | **1.30** missed |",
                     "| Texts | c | narrow | 0.50 |  | **0.60** missed |",
                     "| Load | 1 ms | 0.30 ms |", "| Size | 320 KiB | **321.00 KiB** missed |",
                     "| Build, `linux` (100 s of processor time) | 60 s | **61.00 s** missed |", "A note.",
                     "|  | copy&lt;x> | 0 | 4.0 ns | 1.33 | 1.33 to 1.33 | 4.0 ns | 1.33 | 1.33 to 1.33 |",
                     "| a.so | 320.0 KiB | 3 | `A.cpp` |", "| b.so | 1.0 KiB | 4 | none |",
                     "|  | narrow | 2 | 103.0 ns | 1.03 | 1.03 to 1.03 | 260.0 ns | 1.30 | 1.03 to 1.50 |",
                     "|  | wide | 2.5 | 107.0 ns | 1.07 | 1.07 to 1.07 | 300.0 ns | 1.50 | 1.07 to 1.60 |"):
            self.assertIn(line, text.splitlines())
        self.assertIn("2001-02-03: a machine; a system; a compiler, `Release`; Eight, Seventeen.", text)

    def test_the_page_says_that_the_machine_was_busy(self):
        for load, said in ((1.9, False), (2.0, True)):
            text = report.page(measured(), {**FACTS, "busy": load}, BUDGETS, [])
            self.assertEqual("The machine was busy" in text, said, load)

    def test_the_picture_has_a_bar_for_each_ratio_and_no_other(self):
        root = xml.etree.ElementTree.fromstring(report.picture(measured(), BUDGETS["rows"]))
        texts = [element.text for element in root.iter("{http://www.w3.org/2000/svg}text")]
        for shown in ("1.03", "1.30", "1.07", "1.50", "0.60"):
            self.assertEqual(texts.count(shown), 1, shown)
        self.assertNotIn("2.0 ns", texts)
        self.assertNotIn("50.1 ms", texts)

    def test_a_long_time_is_shown_in_larger_units(self):
        self.assertEqual([report.nanoseconds(value) for value in (0.54, 9999.94, 10000, 1e6)],
                         ["0.5 ns", "9999.9 ns", "10.0 µs", "1.0 ms"])

    def test_each_budget_names_a_group_that_the_page_has(self):
        for budget in report.read(os.path.join(report.HERE, "budgets.json"))["rows"]:
            self.assertIn(budget["group"], report.GROUPS)
            self.assertIn(budget.get("kind", "ratio"), ("ratio", "over", "time", "ms"))


if __name__ == "__main__":
    unittest.main()
