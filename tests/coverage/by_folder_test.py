#!/usr/bin/env python3
"""Tests of the table of coverage."""

import contextlib
import io
import json
import os
import tempfile
import unittest
from pathlib import Path

import by_folder


def line(number: int, count: int, *branches: int) -> dict[str, object]:
    return {"line_number": number, "count": count, "branches": [{"count": taken} for taken in branches]}


class ByFolderTest(unittest.TestCase):
    def setUp(self) -> None:
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.addCleanup(os.chdir, os.getcwd())
        os.chdir(folder.name)
        Path("readers").mkdir()
        Path("readers/A.cpp").write_text("bool f()\n{\n    if (a)\n        return false;\n    return true;\n}\n")

    def answer(self, lines: list[dict[str, object]], document: str, least_lines: str, least_branches: str) -> tuple[int, str]:
        Path("report.json").write_text(json.dumps({"files": [{"file": "readers/A.cpp", "lines": lines}]}))
        Path("coverage.md").write_text(document)
        out = io.StringIO()
        with contextlib.redirect_stdout(out):
            status = by_folder.main("report.json", "coverage.md", least_lines, least_branches)
        return status, out.getvalue()

    def test_shares_are_of_lines_and_branches(self) -> None:
        status, text = self.answer([line(3, 1, 1, 0), line(4, 1), line(5, 0)], "", "66", "50")
        self.assertEqual(status, 0, text)
        self.assertRegex(text, r"readers +3 +66\.7% +2 +50\.0%")

    def test_shares_below_the_limits_fail(self) -> None:
        status, text = self.answer([line(3, 1, 1, 0), line(4, 1), line(5, 0)], "", "67", "51")
        self.assertEqual(status, 1)
        self.assertIn("fewer than 67% of the lines", text)
        self.assertIn("fewer than 51% of the branches", text)

    def test_a_refusal_that_is_not_reached_has_to_be_listed(self) -> None:
        lines = [line(3, 1), line(4, 0), line(5, 1)]
        status, text = self.answer(lines, "", "0", "0")
        self.assertEqual(status, 1)
        self.assertIn("not reached, and not listed: readers/A.cpp: return false;", text)
        row = "| `readers/A.cpp` | `return false;` | because |\n"
        self.assertEqual(self.answer(lines, row, "0", "0")[0], 0)

    def test_what_is_listed_and_reached_fails(self) -> None:
        status, text = self.answer([line(4, 1)], "| `readers/A.cpp` | `return false;` | because |\n", "0", "0")
        self.assertEqual(status, 1)
        self.assertIn("listed, and reached: readers/A.cpp: return false;", text)


if __name__ == "__main__":
    unittest.main()
