#!/usr/bin/env python3
"""Tests of extract_examples.py and check_examples.py."""

import contextlib
import io
import os
import pathlib
import tempfile
import unittest

import check_examples
import extract_examples

PIECE = '# Title\n\nText.\n\n```cpp\nint a = 1;\nstd::cout << a;\n```\n\n```output\n1\n```\n'
PROGRAM = 'Text:\n\n    #include <iostream>\n\n    int main()\n    {\n    }\n\nMore.\n'


class ExtractExamplesTest(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)

    def test_a_fenced_block_is_an_example_with_its_place_and_output(self):
        self.assertEqual(extract_examples.examples(PIECE),
                         [extract_examples.Example(6, "int a = 1;\nstd::cout << a;\n", "1\n")])

    def test_an_indented_block_is_one_when_it_has_a_main(self):
        self.assertEqual(extract_examples.examples(PROGRAM),
                         [extract_examples.Example(3, "#include <iostream>\n\nint main()\n{\n}\n")])
        self.assertEqual(extract_examples.examples("Text:\n\n    int remain() { return 0; }\n"), [])

    def test_a_list_that_goes_on_and_another_language_are_none(self):
        self.assertEqual(extract_examples.examples("- an item\n    int main() {}\n\n```sh\nint main()\n```\n"), [])

    def test_an_output_belongs_to_the_example_in_front_of_it(self):
        found = extract_examples.examples("```cpp\na;\n```\n" + PIECE)
        self.assertEqual([example.output for example in found], [None, "1\n"])
        with self.assertRaises(ValueError):
            extract_examples.examples("```output\n1\n```\n")
        with self.assertRaises(ValueError):
            extract_examples.examples("```cpp\na;\n```\n\n    make\n\n```output\n1\n```\n")

    def test_a_piece_becomes_the_body_of_a_main_and_a_program_stays(self):
        piece, = extract_examples.examples(PIECE)
        self.assertIn("#include <kvr/producer/XMLProducer.h>\n", piece.source())
        self.assertTrue(piece.source().endswith("\nint main()\n{\n    int a = 1;\n    std::cout << a;\n}\n"))
        program, = extract_examples.examples(PROGRAM)
        self.assertEqual(program.source(), program.code)

    def test_sources_are_written_once_and_again_when_they_change(self):
        document = self.folder / "Hosting.md"
        source = self.folder / "sources/hosting_example_1.cpp"

        def extract(text):
            document.write_text(text, encoding="utf-8")
            with contextlib.redirect_stdout(io.StringIO()) as printed:
                self.assertEqual(extract_examples.main(["", str(document), str(source.parent)]), 0)
            return printed.getvalue()

        self.assertEqual(extract(PIECE), "hosting_example_1\n")
        self.assertTrue(source.read_text(encoding="utf-8").startswith("// Hosting.md, line 6\n#include"))
        os.utime(source, (0, 0))
        extract(PIECE)
        self.assertEqual(source.stat().st_mtime, 0)
        extract(PIECE.replace("a = 1", "a = 2"))
        self.assertGreater(source.stat().st_mtime, 0)

    def problem_of(self, script, output, code="int main()"):
        program = self.folder / "program"
        program.write_text("#!/bin/sh\n" + script, encoding="utf-8")
        program.chmod(0o755)
        scene = self.folder / "scene/complete.xml"
        scene.parent.mkdir(exist_ok=True)
        scene.write_text("the scene", encoding="utf-8")
        scene.with_suffix(".kvrproperty").write_text("its properties", encoding="utf-8")
        (scene.parent / "complete.mesh").write_text("a mesh", encoding="utf-8")
        return check_examples.problem_of(extract_examples.Example(1, code, output), program, scene)

    def test_a_program_runs_beside_the_scene_and_its_side_files(self):
        self.assertIsNone(self.problem_of('cat "$1" gate.kvrproperty complete.mesh', "the sceneits propertiesa mesh"))

    def test_another_output_none_at_all_and_another_status_are_problems(self):
        self.assertIn("printed\n2\ninstead of\n1\n", self.problem_of("echo 2", "1\n"))
        self.assertIsNone(self.problem_of("echo 2", None))
        self.assertEqual(self.problem_of("true", None), "printed nothing")
        self.assertIn("ended with 1: why", self.problem_of("echo 1\necho why >&2\nexit 1", "1\n"))

    def test_without_namespaces_a_program_that_wants_them_has_to_say_so(self):
        code = "int main() { unshare(0); }"
        self.addCleanup(setattr, check_examples, "may_leave_the_network", check_examples.may_leave_the_network)
        check_examples.may_leave_the_network = lambda: False
        self.assertIsNone(self.problem_of("exit 3", "1\n", code))
        self.assertIn("ended with 0 instead of 3", self.problem_of("echo 1", "1\n", code))
        check_examples.may_leave_the_network = lambda: True
        self.assertIn("ended with 3", self.problem_of("exit 3", "1\n", code))


if __name__ == "__main__":
    unittest.main()
