#!/usr/bin/env python3
"""Tests of check_operations.py."""

import contextlib
import io
import pathlib
import tempfile
import unittest

import check_operations

RULES = """
foreach(folder framework/api scene)
  file(GLOB headers CONFIGURE_DEPENDS "${PROJECT_SOURCE_DIR}/${folder}/*.h")
endforeach()
install(FILES producer/Export.h producer/XMLProducer.h
  DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}/kvr/producer")
install(FILES "${CMAKE_CURRENT_BINARY_DIR}/made.cmake" DESTINATION "${KVR_PACKAGE_DIR}")
"""


class CheckOperationsTest(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.root = pathlib.Path(folder.name)
        self.write("cmake/KvrInstall.cmake", RULES)
        self.write("producer/Export.h", "")
        self.write("producer/XMLProducer.h", "")

    def write(self, path, text):
        file = self.root / path
        file.parent.mkdir(parents=True, exist_ok=True)
        file.write_text(text, encoding="utf-8")

    def check(self, text, path="framework/api/IThing.h"):
        self.write(path, text)
        return check_operations.check(self.root)

    def undocumented(self, text):
        """The names without a comment, in the order of the header."""
        return [problem.split(": ", 1)[1].removesuffix(" has no comment") for problem in self.check(text)[3]]

    def in_class(self, body):
        return "namespace KVR\n{\n/// A thing.\nclass KVR_API Thing final : public Base<int>\n{\n" + body + "\n};\n}\n"

    def undocumented_in_class(self, body):
        return [name.removeprefix("KVR::Thing::") for name in self.undocumented(self.in_class(body))]

    def test_a_comment_directly_above_documents_an_operation(self):
        self.assertEqual(self.undocumented_in_class("public:\n    /// What it is.\n    virtual int A() const = 0;"), [])

    def test_a_comment_behind_documents_an_operation(self):
        self.assertEqual(self.undocumented_in_class("public:\n    virtual int A() const = 0;  ///< What it is."), [])

    def test_an_operation_without_a_comment_is_named_with_its_place(self):
        problems = self.check(self.in_class("public:\n    virtual int A() const = 0;"))[3]
        self.assertEqual(problems, ["framework/api/IThing.h:7: KVR::Thing::A has no comment"])

    def test_an_ordinary_comment_and_one_with_a_line_between_do_not_count(self):
        self.assertEqual(self.undocumented_in_class("public:\n    // Why.\n    int A();\n    /// B.\n\n    int B();"),
                         ["A", "B"])

    def test_only_what_is_public_counts(self):
        self.assertEqual(self.undocumented_in_class("    int A();\nprotected:\n    int B();\npublic:\n    int C();\n"
                                                    "private:\n    int D();"), ["C"])
        self.assertEqual(self.undocumented("/// Plain.\nstruct Plain\n{\n    int A();\nprivate:\n    int B();\n};\n"),
                         ["Plain::A"])

    def test_what_makes_copies_and_compares_does_not_count(self):
        self.assertEqual(self.undocumented_in_class(
            "public:\n    explicit Thing(int a) : m_a(a), m_b{a} {}\n    ~Thing() override;\n"
            "    Thing& operator=(Thing const&) = default;\n    Thing(Thing const&) = delete;\n"
            "    bool operator!=(Thing const& other) const { return m_a != other.m_a; }\n    void Gone() = delete;\n"
            "    friend bool operator==(Thing const& a, Thing const& b) noexcept { return a.m_a == b.m_a; }"), [])

    def test_other_operators_count(self):
        self.assertEqual(self.undocumented_in_class(
            "public:\n    int operator[](int) const;\n\n    void operator()() const;\n\n    operator std::FILE*() const;"
            "\n\n    static void operator delete(void* memory) noexcept;"),
                         ["operator[]", "operator()", "operatorstd::FILE*", "operatordelete"])

    def test_fields_types_and_values_are_no_operations(self):
        self.assertEqual(self.undocumented_in_class(
            "public:\n    enum Kind : int\n    {\n        kA = (1)\n    };\n    using F = std::function<void(int)>;\n"
            "    std::function<int(int)> f;\n    int a = Max(1, 2);\n    std::vector<int> b{1, 2};\n"
            "    static constexpr int kC = int(3);\n    class Later;\n    static_assert(sizeof(int) == 4);"), [])

    def test_a_call_of_a_macro_is_no_operation_and_hides_none(self):
        self.assertEqual(self.undocumented(
            "namespace KVR\n{\nKVR_NAME(A);\nKVR_NAME(B(1), (C));\nint D();\nE F();\n}\n"), ["KVR::D", "KVR::F"])
        self.assertEqual(self.undocumented("KVR_NAME(A)\nint B();\nint C();\n"), ["KVR_NAME", "C"])
        self.assertEqual(self.undocumented_in_class("public:\n    KVR_NAME(A);\n    operator int();"), ["operatorint"])

    def test_bodies_are_passed_over(self):
        self.assertEqual(self.undocumented_in_class(
            'public:\n    /// A.\n    int A() const\n    {\n        if (m_a) { return B("}"); }\n        return \'}\';\n'
            "    }\n    int C();"), ["C"])

    def test_overloads_that_stand_together_share_a_comment(self):
        self.assertEqual(self.undocumented_in_class(
            "public:\n    /// A.\n    void A(int);\n    void A(\n        double);\n    void B();\n\n    void A(char);"),
                         ["B", "A"])

    def test_virtual_overloads_do_not(self):
        self.assertEqual(self.undocumented_in_class("public:\n    /// A.\n    virtual void A(int);\n"
                                                    "    virtual void A(double);"), ["A"])

    def test_an_override_takes_the_comment_of_what_it_overrides(self):
        base = "/// A base.\nclass Base\n{\npublic:\n    /// A.\n    virtual int A() = 0;\n    virtual int B() = 0;\n};\n"
        self.write("scene/Base.h", base)
        self.assertEqual(self.undocumented_in_class("public:\n    int A() override;\n    int B() override { return 1; }\n"
                                                    "    int C() override;"), ["B", "C", "Base::B"])

    def test_a_plain_setter_takes_the_comment_of_what_its_class_answers(self):
        body = "public:\n    /// A.\n    int A() const;\n    void SetA(int);\n    virtual void SetB(int);\n    int B();\n"
        self.assertEqual(self.undocumented_in_class(body + "    void SetC(int);"), ["SetB", "B", "SetC"])

    def test_free_functions_and_templates_count(self):
        self.assertEqual(self.undocumented(
            "namespace KVR::Unicode\n{\nKVR_API std::string A(int);\n/// B.\ntemplate <class T, class U = List<T>>\n"
            "inline U B(T const& t)\n{\n    return t;\n}\ntemplate <class T>\n[[noreturn]] void C();\n}\n"),
                         ["KVR::Unicode::A", "KVR::Unicode::C"])

    def test_a_class_needs_a_comment(self):
        problems = self.check("#pragma once\nnamespace KVR\n{\nclass Later;\nclass KVR_API A : public B\n{\n};\n/// C.\n"
                              "template <class T>\nstruct C\n{\n    struct D\n    {\n    };\n};\n}\n")[3]
        self.assertEqual([problem.split(": ", 1)[1] for problem in problems],
                         ["class KVR::A has no comment", "class KVR::C::D has no comment"])

    def test_directives_are_passed_over(self):
        self.assertEqual(self.undocumented("#define A(x) \\\n    int x()\n#if defined(B)\n#endif\n"), [])

    def test_the_installed_headers_are_those_that_the_rules_name(self):
        for path in ("framework/api/IA.h", "scene/Scene.h", "scene/Scene.cpp", "producer/Inside.h", "host/Main.h"):
            self.write(path, "")
        self.assertEqual(check_operations.installed_headers(self.root),
                         ["framework/api/IA.h", "producer/Export.h", "producer/XMLProducer.h", "scene/Scene.h"])

    def test_the_counts_are_printed_and_a_problem_or_nothing_at_all_fails(self):
        with contextlib.redirect_stdout(io.StringIO()) as printed:
            self.assertEqual(check_operations.main(["", str(self.root)]), 1)
            self.write("scene/A.h", self.in_class("public:\n    /// A.\n    virtual int A();\n    int B();"))
            self.assertEqual(check_operations.main(["", str(self.root)]), 1)
            self.write("scene/A.h", self.in_class("public:\n    /// A.\n    virtual int A();"))
            self.assertEqual(check_operations.main(["", str(self.root)]), 0)
        self.assertIn("2 operations (1 of them declared virtual), 1 documented; 1 classes, 1 documented",
                      printed.getvalue())
        self.assertIn("1 operations (1 of them declared virtual), 1 documented", printed.getvalue())


if __name__ == "__main__":
    unittest.main()
