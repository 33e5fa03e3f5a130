#!/usr/bin/env python3
"""The check of names finds what it is there to find."""

import pathlib
import tempfile
import unittest
from unittest import mock

import check_names

LIST = """
#define KVR_ELEMENT(name) inline constexpr ElementName name(u"" #name, #name)
KVR_ELEMENT(IPart);
KVR_ATTRIBUTE(Label);  // Kept: a remark.
KVR_ELEMENT_AND_ATTRIBUTE(ID);
inline constexpr FormatName kExtension(u".extension", ".extension");
"""
READER = 'On(Names::IPart, [&] { IsNamed(x, Names::ID); Text(Names::Label); Attribute(Names::ID); Is(u"True"); Is(u"kA"); });'
WRITER = 'Begin(Names::IPart); Attribute(Names::Label, "1"); Attribute(Names::ID, "<?xml version?>");'
DOCUMENT = "## 26. Names\n\nElements: `ID`, `IPart`\n\nAttributes: `ID`, `Label`\n"
EXAMPLE = '<?xml version="1.0"?><IPart Label="x"><ID ID="1"/><!-- <Other/> --></IPart>'


class NameCheck(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.root = pathlib.Path(folder.name)
        self.write(check_names.LIST, LIST)
        self.write("readers/A.cpp", READER)
        self.write("authoring/elements/W.cpp", WRITER)
        self.write("docs/formats.md", DOCUMENT)
        self.write("examples/complete/complete.xml", EXAMPLE)
        self.write("examples/complete/complete.ids.xml", "")
        self.write("examples/complete/complete.kvrproperty", "")
        self.exceptions()

    def exceptions(self, reserved=(), unread=(), unwritten=()):
        for name, value in (("RESERVED", set(reserved)), ("UNREAD", dict.fromkeys(unread, "so")),
                            ("UNWRITTEN", dict.fromkeys(unwritten, "so"))):
            patch = mock.patch.object(check_names, name, value)
            patch.start()
            self.addCleanup(patch.stop)

    def write(self, path, text):
        file = self.root / path
        file.parent.mkdir(parents=True, exist_ok=True)
        file.write_text(text, encoding="utf-8")

    def assert_problems(self, *problems):
        """Each is the start of a problem's text."""
        found = check_names.check(self.root)
        self.assertEqual(len(found), len(problems), found)
        for problem in problems:
            self.assertTrue(any(text.startswith(problem) for text in found), (problem, found))

    def test_equal_names_are_no_problem(self):
        self.assert_problems()

    def test_a_reader_and_a_writer_quote_no_name(self):
        self.write("mesh/B.h", 'Is(u"Extra"); Is(u"IPart");')
        self.assert_problems("Extra: in quotes in mesh/B.h", "IPart: in quotes in mesh/B.h")
        self.write("mesh/B.h", "")
        self.write("authoring/B.cpp", 'element += "  <IPart"; element += "</IPart>"; Begin("Label");')
        self.assert_problems("IPart: in quotes in authoring/B.cpp", "IPart: in quotes in authoring/B.cpp",
                             "Label: in quotes in authoring/B.cpp")

    def test_the_list_itself_takes_its_texts_from_its_rows(self):
        self.write(check_names.LIST, LIST + 'inline constexpr ElementName Other(u"Label", "Label");')
        self.assert_problems(*["Label: in quotes in " + check_names.LIST] * 2)

    def test_comments_includes_values_and_other_texts_are_no_names(self):
        self.write("mesh/B.h", '#include "Extra"\n// "Extra" and Names::Extra\n/* "Extra" */\n'
                               'Say("Extra text"); Is(u"False"); Is("extra"); Is(\'"\'); Is("a \\"Extra\\""); Is("a < b");')
        self.assert_problems()

    def test_a_use_without_a_row_is_found(self):
        self.write("authoring/B.cpp", "Begin(Names::Extra);")
        self.assert_problems("Extra: not in ")

    def test_a_row_that_no_reader_takes_is_found(self):
        self.write("readers/A.cpp", READER.replace("Text(Names::Label)", "/* Names::Label */"))
        self.assert_problems("Label: in framework/xml_util/FormatNames.h, but no reader")
        self.exceptions(unread=["Label"])
        self.assert_problems()

    def test_a_row_that_authoring_does_not_write_is_found(self):
        self.write("authoring/elements/W.cpp", WRITER.replace("Names::Label", '"1"'))
        self.assert_problems("Label: in framework/xml_util/FormatNames.h, but authoring")
        self.exceptions(unwritten=["Label"])
        self.assert_problems()

    def test_an_exception_that_holds_no_longer_is_found(self):
        self.exceptions(unread=["Label"], unwritten=["ID"])
        self.assert_problems("Label: said to be read nowhere", "ID: said to be written nowhere")
        self.exceptions(unread=["Gone"], unwritten=["Gone"], reserved=["Gone"])
        self.assert_problems("Gone: an exception that is not")

    def test_a_reserved_element_is_used_nowhere(self):
        self.write(check_names.LIST, LIST + "KVR_ELEMENT(AddRef);\n")
        self.exceptions(reserved=["AddRef"])
        self.assert_problems()
        self.write("readers/B.cpp", "IsNamed(node, Names::AddRef)")
        self.assert_problems("AddRef: reserved, but used")

    def test_a_name_that_is_not_documented_is_found(self):
        self.write("docs/formats.md", DOCUMENT.replace(", `Label`", ""))
        self.assert_problems("Label: an attribute that docs/formats.md does not list")
        self.write("docs/formats.md", "")
        self.assert_problems("IPart: an element that docs", "ID: an element that docs", "ID: an attribute that docs",
                             "Label: an attribute that docs")

    def test_a_documented_name_without_a_row_is_found(self):
        self.write("docs/formats.md", DOCUMENT.replace("`IPart`", "`IPart`, `Extra`"))
        self.assert_problems("Extra: an element of docs/formats.md")

    def test_a_name_that_the_example_does_not_use_is_found(self):
        self.write("examples/complete/complete.xml", EXAMPLE.replace('Label="x"', ""))
        self.assert_problems("Label: an attribute that examples/complete does not use")

    def test_a_name_of_the_example_without_a_row_is_found(self):
        self.write("examples/complete/complete.ids.xml", '<Extra More="1"/>')
        self.assert_problems("Extra: an element of examples/complete", "More: an attribute of examples/complete")

    def test_an_attribute_is_not_taken_for_an_element(self):
        self.write("examples/complete/complete.xml", EXAMPLE.replace("<!--", "<Label/><!--"))
        self.assert_problems("Label: an element of examples/complete")
        self.write("examples/complete/complete.xml", EXAMPLE)
        self.write("docs/formats.md", DOCUMENT.replace("`IPart`", "`IPart`, `Label`"))
        self.assert_problems("Label: an element of docs/formats.md")

    def test_a_list_that_is_missing_is_found(self):
        (self.root / check_names.LIST).unlink()
        self.assertTrue(check_names.check(self.root))


if __name__ == "__main__":
    unittest.main()
