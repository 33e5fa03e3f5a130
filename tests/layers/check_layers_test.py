#!/usr/bin/env python3
"""The layer check finds what it is there to find: each test makes a small tree and runs the check on it."""

import contextlib
import io
import pathlib
import tempfile
import unittest

import check_layers


class LayerCheck(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.root = pathlib.Path(folder.name)

    def write(self, path, text=""):
        file = self.root / path
        file.parent.mkdir(parents=True, exist_ok=True)
        file.write_text(text, encoding="utf-8")

    def problems(self):
        return check_layers.check(self.root)[1]

    def assert_one(self, *parts):
        problems = self.problems()
        self.assertEqual(len(problems), 1, problems)
        for part in parts:
            self.assertIn(part, problems[0])

    def test_a_lower_layer_may_be_included(self):
        self.write("framework/api/IObject.h")
        self.write("framework/xml_util/XMLObject.h", '#include "framework/api/IObject.h"\n')
        self.write("readers/Units.h", '#include "framework/xml_util/XMLObject.h"\n')
        self.write("geometry/XMLPoint.h", '#include "readers/Units.h"\n')
        self.write("mesh/Store.cpp", '#include "geometry/XMLPoint.h"\n')
        self.write("structure/XMLPart.cpp", '#include "readers/Units.h"\n#include <vector>\n')
        self.write("producer/Scan.cpp", '#include "structure/XMLPart.h"\n#include "mesh/Store.h"\n')
        self.write("structure/XMLPart.h")
        self.write("mesh/Store.h")
        self.assertEqual(self.problems(), [])

    def test_a_higher_layer_is_refused_with_file_line_and_edge(self):
        self.write("structure/XMLPart.h")
        self.write("readers/Units.cpp", '#include <map>\n\n#include "structure/XMLPart.h"\n')
        self.assert_one("readers/Units.cpp:3:", "readers/Units.cpp (readers) -> structure/XMLPart.h (structure)")

    def test_api_and_kernel_do_not_know_each_other(self):
        self.write("framework/api/IObject.h", '#include "framework/kernel/Entity.h"\n')
        self.write("framework/kernel/Entity.h", '#include "framework/api/IObject.h"\n')
        self.assertEqual(len(self.problems()), 2)

    def test_the_parts_of_the_exchange_know_each_other_by_its_public_headers_alone(self):
        self.write("exchange/ImportModel.h")
        self.write("exchange/run/ChildProcess.h")
        self.write("exchange/import/SceneImport.h")
        self.write("exchange/certify/CertifyModel.cpp",
                   '#include "exchange/ImportModel.h"\n#include "exchange/run/ChildProcess.h"\n')
        self.write("host/ImportCommand.cpp", '#include "exchange/ImportModel.h"\n')
        self.assertEqual(self.problems(), [])
        self.write("exchange/certify/DocumentFacts.cpp", '#include "exchange/import/SceneImport.h"\n')
        self.write("exchange/export/Ply.cpp", '#include "exchange/import/SceneImport.h"\n')
        self.write("host/ExportCommand.cpp", '#include "exchange/run/ChildProcess.h"\n')
        problems = self.problems()
        self.assertEqual(len(problems), 3, problems)

    def test_the_context_headers_are_below_the_producers_other_files(self):
        self.write("producer/XMLProducerImpl.h")
        self.write("producer/Dispatch.h")
        self.write("readers/Units.h", '#include "producer/XMLProducerImpl.h"\n')
        self.assertEqual(self.problems(), [])
        self.write("readers/Styles.h", '#include "producer/Dispatch.h"\n')
        self.assert_one("readers/Styles.h:1:", "readers may not include producer")

    def test_the_context_may_not_look_up(self):
        self.write("structure/XMLFile.h")
        self.write("producer/XMLProducerServices.cpp", '#include "structure/XMLFile.h"\n')
        self.assert_one("producer/XMLProducerServices.cpp:1:", "context may not include structure")

    def test_the_producers_header_includes_framework_headers_alone(self):
        self.write("producer/SideFileIndex.h")
        self.write("producer/XMLProducerImpl.h", '#include "producer/SideFileIndex.h"\n')
        self.assert_one("producer/XMLProducerImpl.h:1:", "declares the rest")

    def test_the_host_sees_installed_headers_only(self):
        self.write("producer/XMLProducer.h")
        self.write("producer/XMLProducerImpl.h")
        self.write("host/Tree.cpp", '#include "producer/XMLProducer.h"\n')
        self.assertEqual(self.problems(), [])
        self.write("host/tree/Tree.cpp", '#include "producer/XMLProducerImpl.h"\n')
        self.assert_one("host/tree/Tree.cpp:1:", "host may not include context")

    def test_authoring_does_not_know_the_producer(self):
        self.write("producer/XMLProducer.h")
        self.write("authoring/Scene.cpp", '#include "producer/XMLProducer.h"\n')
        self.assert_one("authoring/Scene.cpp:1:", "authoring may not include facade")

    def test_angle_brackets_do_not_hide_an_edge(self):
        self.write("structure/XMLPart.h")
        self.write("readers/Units.cpp", "# include <structure/XMLPart.h>\n")
        self.assert_one("readers/Units.cpp:1:", "readers may not include structure")

    def test_an_include_not_written_from_the_root_is_refused(self):
        self.write("structure/XMLPart.h")
        self.write("structure/XMLPart.cpp", '#include "XMLPart.h"\n')
        self.write("readers/Units.cpp", '#include "../structure/XMLPart.h"\n')
        self.assertEqual(len(self.problems()), 2)

    def test_a_file_outside_the_known_folders_is_refused(self):
        self.write("framework/extras/Helper.h")
        self.assert_one("framework/extras/Helper.h:1:", "no layer")

    def test_a_computed_include_is_refused(self):
        self.write("readers/Units.cpp", "#include HEADER\n")
        self.assert_one("readers/Units.cpp:1:")

    def test_an_include_in_a_comment_is_no_edge(self):
        self.write("structure/XMLPart.h")
        self.write("readers/Units.cpp", '// #include "structure/XMLPart.h"\n/*\n#include "structure/XMLPart.h"\n*/\n')
        self.assertEqual(self.problems(), [])

    def test_document_text_is_converted_in_one_place(self):
        call = "auto* text = xercesc::XMLString::transcode(node->getNodeName());\n"
        self.write("framework/xml_util/XMLStrUtil.cpp", call + "xercesc::XMLString::release(&text);\n")
        self.assertEqual(self.problems(), [])
        self.write("structure/XMLPart.cpp", "#include <xercesc/dom/DOM.hpp>\n" + call)
        self.assert_one("structure/XMLPart.cpp:2:", "transcode")

    def test_document_text_is_released_in_one_place(self):
        self.write("host/tree/Tree.cpp", "\n  XMLString::release(&text);\n")
        self.assert_one("host/tree/Tree.cpp:2:", "release")

    def test_a_comment_may_speak_of_transcoding(self):
        self.write("structure/XMLPart.cpp", "// No transcode() here: names compare as they stand.\n")
        self.assertEqual(self.problems(), [])

    def test_a_text_with_slashes_starts_no_comment(self):
        self.write("structure/XMLPart.h")
        self.write("readers/Units.cpp", 'char const* a = "/*";\n#include "structure/XMLPart.h"\nchar const* b = "*/";\n')
        self.assert_one("readers/Units.cpp:2:")

    def test_a_problem_or_an_empty_tree_is_a_failing_exit_status(self):
        with contextlib.redirect_stdout(io.StringIO()) as printed:
            self.assertEqual(check_layers.main(["", str(self.root)]), 1)
            self.write("framework/api/IObject.h")
            self.assertEqual(check_layers.main(["", str(self.root)]), 0)
            self.write("framework/api/IFile.h", '#include "framework/api/Missing.h"\n')
            self.assertEqual(check_layers.main(["", str(self.root)]), 1)
        self.assertIn("framework/api/IFile.h:1:", printed.getvalue())


if __name__ == "__main__":
    unittest.main()
