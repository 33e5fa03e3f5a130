#pragma once

#include <string_view>
#include <vector>

#include "describe/AnswerVisitor.h"
#include "describe/Row.h"
#include "python/Bindings.h"

namespace KVR::Python
{

/// Makes a value of Python of an answer: None, bool, int, float, str, bytes; a 4 by 4 array of a matrix, a tuple of any
/// other row of numbers, a list of a list, a dictionary of a map; of an object what `makeRecord` makes of its table's
/// name and a dictionary of its members.
class PythonAnswers final : public AnswerVisitor
{
public:
    explicit PythonAnswers(py::object makeRecord) : m_makeRecord(std::move(makeRecord)) {}

    /// What was told.
    py::object Take() { return std::move(m_answer); }

    bool BeginMember(Row const& row) override;
    void Null() override { Put(py::none()); }
    void Bool(bool value) override { Put(py::bool_(value)); }
    void Integer(long long value) override { Put(py::int_(value)); }
    void Unsigned(unsigned long long value) override { Put(py::int_(value)); }
    void Number(double value) override { Put(py::float_(value)); }
    void Text(std::string_view text) override { Put(Python::Text(text)); }
    void Bytes(void const* bytes, std::size_t size) override;
    void BeginList(Layout) override { Open(py::list(), {}); }
    void EndList() override { Close(); }
    void BeginMap() override { Open(py::dict(), {}); }
    void Key(std::string_view key) override { m_open.back().key = Python::Text(key); }
    void EndMap() override { Close(); }
    void BeginObject(Interface const& interface) override { Open(py::dict(), interface.name); }
    void EndObject() override { Close(); }
    void Numbers(double const* values, std::size_t count) override;

private:
    // A list or dictionary that is open, the next key of the latter, and the table of an object.
    struct Level
    {
        py::object value;
        py::object key;
        std::string_view table;
    };

    void Put(py::object value);
    void Open(py::object value, std::string_view table) { m_open.push_back({std::move(value), py::object(), table}); }
    void Close();

    py::object m_makeRecord;
    std::vector<Level> m_open;
    py::object m_answer;
};

}  // namespace KVR::Python
