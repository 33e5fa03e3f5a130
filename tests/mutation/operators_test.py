#!/usr/bin/env python3
"""Tests of the operators that make mistakes in the readers' tables."""

import unittest

from operators import Kinds, blank, places_of, with_mistakes

KINDS = Kinds(("Child", "Unit"), ("Label", "Path"))


def mistakes(code: str) -> list[tuple[str, str, str]]:
    return [(place.operator, code[place.start : place.end], mistake)
            for place in places_of(code, KINDS) for mistake in place.mistakes]


class OperatorsTest(unittest.TestCase):
    def test_a_policy_becomes_each_of_the_others(self) -> None:
        self.assertEqual(mistakes("{a, &B, kOnFailure_Stop},"),
                         [("policy", "kOnFailure_Stop", "kOnFailure_Next"),
                          ("policy", "kOnFailure_Stop", "kOnFailure_Abort")])

    def test_a_form_of_booleans_becomes_those_that_differ(self) -> None:
        found = mistakes("x = ReadBoolean(node, name, kVisibility_OneElseHidden);")
        self.assertEqual([mistake for _, _, mistake in found],
                         ["kBoolean_IntegerOneElseFalse", "kBoolean_TrueWordElseFalse",
                          "kVisibility_OneElseHiddenAbsentShown"])

    def test_a_name_becomes_the_next_of_its_kind(self) -> None:
        self.assertEqual(mistakes("f(Names::Child, Names::Path, Names::ID);"),
                         [("name", "Names::Child", "Names::Unit"), ("name", "Names::Path", "Names::Label"),
                          ("name", "Names::ID", "Names::Description")])

    def test_rows_and_comparisons_change_in_what_they_make_of_case(self) -> None:
        self.assertEqual(mistakes("Match(child, On(name, f), OnAnyCase(other, g)); return Equals(a, b);"),
                         [("case", "On(", "in any case"), ("case", "OnAnyCase(", "exactly"),
                          ("case", "Equals(", "in any case")])

    def test_ids_are_mapped_and_not_mapped(self) -> None:
        self.assertEqual([m[2] for m in mistakes("\n    producer->ApplyIdMapping(id);\n")], ["as written"])
        self.assertEqual([m[2] for m in mistakes("\n    GetNodeAttribute(node, attribute, m_targetId);\n")], ["mapped"])
        self.assertEqual(mistakes("\n    GetNodeAttribute(node, attribute, m_id);\n    p->ApplyIdMapping(m_id);\n"),
                         [("mapping", "p->ApplyIdMapping(m_id);", "as written")])

    def test_defaults_and_answers_change_but_counters_do_not(self) -> None:
        self.assertEqual(mistakes("bool visible = true;\nfor (int i = 0; i < n; ++i)\n    return false;"),
                         [("default", "true", "false"), ("result", "false", "true")])

    def test_a_row_takes_what_its_neighbour_stands_for(self) -> None:
        self.assertEqual(mistakes('constexpr Row kRows[] = {\n    {"a", &A}, {"b", &B}, {"c", &C},\n};\n'),
                         [("target", "&A", "&B"), ("target", "&B", "&C"), ("target", "&C", "&B")])

    def test_a_target_may_have_several_arguments_of_a_template(self) -> None:
        self.assertEqual(mistakes("constexpr Row kRows[] = {\n    {Any, &A<B, C>, kNext},\n    {Any, &D, kNext},\n};\n"),
                         [("target", "&A<B, C>", "&D"), ("target", "&D", "&A<B, C>")])

    def test_constants_that_are_chosen_at_run_time_are_none(self) -> None:
        code = "constexpr unsigned kVersion = 1;\nvirtual void Receive() = 0;\nconstexpr BooleanForm kOther = kForm;\n"
        self.assertEqual(with_mistakes(code, places_of(code, KINDS), 3),
                         "const unsigned kVersion = (::kvr_mutant(3) ? 0 : 1);\nvirtual void Receive() = 0;\n"
                         "const BooleanForm kOther = kForm;\n")

    def test_comments_texts_and_what_observers_are_told_are_left_alone(self) -> None:
        code = ('// return false; here\nchar const* text = "return true;";\n'
                "void TellIt(ReadObserver& observer)\n{\n    bool is = true;\n}\n"
                "    TellObserver(&ReadObserver::Met, Names::Child);\n")
        self.assertEqual(mistakes(code.replace('"return true;"', '"a // b"')), [])
        self.assertEqual(len(blank(code)), len(code))

    def test_all_mistakes_are_built_at_once_and_numbered(self) -> None:
        code = "constexpr Row kRows[] = {\n    {Names::Child, &A, kOnFailure_Stop},\n};\n"
        text = with_mistakes(code, places_of(code, KINDS), 7)
        self.assertEqual(text, "const Row kRows[] = {\n    {(::kvr_mutant(7) ? Names::Unit : Names::Child), &A, "
                               "(::kvr_mutant(9) ? kOnFailure_Abort : (::kvr_mutant(8) ? kOnFailure_Next : "
                               "kOnFailure_Stop))},\n};\n")

    def test_what_is_left_out_keeps_its_number(self) -> None:
        code = "bool a = true;\nbool b = true;\n"
        self.assertEqual(with_mistakes(code, places_of(code, KINDS), 3, {0}),
                         "bool a = true;\nbool b = (::kvr_mutant(4) ? false : true);\n")

    def test_a_statement_is_made_or_not(self) -> None:
        code = "\n    producer->ApplyIdMapping(id);\n"
        text = with_mistakes(code, places_of(code, KINDS), 3)
        self.assertEqual(text, "\n    if (!::kvr_mutant(3)) producer->ApplyIdMapping(id);\n")
        code = "Match(child, On(name, f));"
        text = with_mistakes(code, places_of(code, KINDS), 3)
        self.assertEqual(text, "Match(child, MutantOn{::kvr_mutant(3)}(name, f));")


if __name__ == "__main__":
    unittest.main()
