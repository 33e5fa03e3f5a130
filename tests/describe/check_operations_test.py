#!/usr/bin/env python3
"""The check of operations finds what it is there to find."""

import unittest

import check_operations

HEADER = """
/// virtual int InAComment() const = 0;
class KVR_API IThing : public IObject
{
public:
    ~IThing() override;
    void AcceptVisitor(ObjectVisitor* visitor) override;
    virtual double X() const = 0;
    virtual IsValueSpecifiedEnum Range(double& low,
                                       double& high) const;
    virtual IsValueSpecifiedEnum Value(int& value) const = 0;
    virtual IsValueSpecifiedEnum Value(double& value) const = 0;
    virtual int Count() const noexcept = 0;
    virtual void SetX(double x) = 0;
    double Y() const override;
};
"""
TABLE = """
    Value<&IThing::X>("X"),
    Value<&IThing::Range>("Range"),
    Value<Writing<int>(&IThing::Value)>("Integer"), Value<Writing<double>(&IThing::Value)>("Number"),
    List<&IThing::Count, &IThing::ItemAt>("Items"),
"""


class OperationCheck(unittest.TestCase):
    def problems(self, header=HEADER, table=TABLE):
        return list(check_operations.problems({"framework/api/IThing.h": header},
                                              {"describe/tables/Things.cpp": table}))

    def assert_one(self, problems, *parts):
        self.assertEqual(len(problems), 1, problems)
        for part in parts:
            self.assertIn(part, problems[0])

    def test_a_table_of_all_operations_has_no_problem(self):
        self.assertEqual(self.problems(), [])

    def test_the_operations_are_the_virtual_const_ones(self):
        self.assertEqual([name for _, name in check_operations.operations_of(HEADER)],
                         ["X", "Range", "Value", "Value", "Count"])

    def test_an_operation_without_a_row_is_found(self):
        self.assert_one(self.problems(table=TABLE.replace("&IThing::Range", "&Range")), "IThing::Range", "no row")

    def test_an_added_operation_is_found(self):
        added = HEADER.replace("virtual void SetX", "virtual bool IsNew() const;\n    virtual void SetX")
        self.assert_one(self.problems(header=added), "IThing::IsNew")

    def test_one_of_two_operations_of_one_name_is_found(self):
        table = TABLE.replace("Writing<double>(&IThing::Value)", "Writing<double>(&Value)")
        self.assert_one(self.problems(table=table), "IThing::Value", "1 rows", "2 times")

    def test_a_row_of_another_class_or_in_a_comment_does_not_count(self):
        self.assert_one(self.problems(table=TABLE.replace("&IThing::X>", "&IOther::X>")), "IThing::X")
        self.assert_one(self.problems(table=TABLE.replace("Value<&IThing::X>", "// Value<&IThing::X>")), "IThing::X")

    def test_a_longer_name_does_not_count(self):
        self.assert_one(self.problems(table=TABLE.replace("&IThing::X>", "&IThing::XAt>")), "IThing::X ")

    def test_a_kind_of_object_that_is_not_listed_is_found(self):
        visitor = "virtual void Visit(IThing* object);\n// virtual void Visit(IOld* object);\nvoid Visit(IOther*);"
        whole = "using ObjectInterfaces =\n    InterfaceList<IThing, IMore,\n    IOther>;"
        self.assertEqual(list(check_operations.missing_kinds(visitor, whole)), [])
        self.assert_one(list(check_operations.missing_kinds(visitor, whole.replace("IThing", "IThings"))), "IThing ")
        self.assert_one(list(check_operations.missing_kinds("", whole)), "no visit")

    def test_finding_no_operation_at_all_is_a_problem(self):
        self.assert_one(self.problems(header="class IThing;\n"), "no operation")

    def test_classes_that_are_no_interfaces_are_left_out(self):
        header = HEADER + "class KVR_API IMatrix\n{\n    virtual int RowDimension() const = 0;\n};\n"
        self.assertEqual(self.problems(header=header), [])


if __name__ == "__main__":
    unittest.main()
