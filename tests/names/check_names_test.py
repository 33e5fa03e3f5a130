#!/usr/bin/env python3
"""The check of names finds what it is there to find."""

import pathlib
import tempfile
import unittest

import check_names


class NameCheck(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.root = pathlib.Path(folder.name)
        self.write("readers/A.cpp", 'On(u"IPart"); Attribute(u"Label"); Is(u"True"); Is(u"kUnit");')
        self.write("docs/formats.md", "## 26. Names\n\nElements: `Scene`, `IPart`\n\nAttributes: `Label`\n")
        self.write("examples/complete/complete.xml", '<?xml version="1.0"?><Scene><IPart Label="x"/></Scene>')
        self.write("examples/complete/complete.ids.xml", "")
        self.write("examples/complete/complete.kvrproperty", "")

    def write(self, path, text):
        file = self.root / path
        file.parent.mkdir(parents=True, exist_ok=True)
        file.write_text(text, encoding="utf-8")

    def assert_problems(self, *names):
        problems = check_names.check(self.root)
        self.assertEqual(sorted({problem.split(":")[0] for problem in problems}), sorted(names), problems)

    def test_equal_names_are_no_problem(self):
        self.assert_problems()

    def test_a_name_that_is_read_and_not_listed_is_found(self):
        self.write("mesh/B.h", 'u"Extra"')
        self.assert_problems("Extra")

    def test_a_name_that_is_listed_and_not_read_is_found(self):
        self.write("readers/A.cpp", 'On(u"IPart");')
        self.assert_problems("Label")

    def test_a_name_that_the_example_does_not_use_is_found(self):
        self.write("examples/complete/complete.xml", "<Scene><IPart/></Scene>")
        self.assert_problems("Label")

    def test_an_attribute_is_not_taken_for_an_element(self):
        self.write("examples/complete/complete.xml", '<Scene><IPart Label="x"/><Label/></Scene>')
        self.assert_problems("Label")

    def test_a_constant_counts_when_it_is_used(self):
        self.write(check_names.CONSTANTS, 'inline constexpr char16_t kExtra[] = u"Extra";')
        self.assert_problems()
        self.write("mesh/B.cpp", "IsNamed(node, kExtra)")
        self.assert_problems("Extra")

    def test_a_list_that_is_missing_is_found(self):
        self.write("docs/formats.md", "")
        self.assert_problems("IPart", "Label", "Scene")


if __name__ == "__main__":
    unittest.main()
