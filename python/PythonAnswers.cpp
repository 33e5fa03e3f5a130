#include "python/PythonAnswers.h"

#include <pybind11/numpy.h>

namespace KVR::Python
{

namespace
{

constexpr std::size_t kMatrixSize = 16;

}  // namespace

bool PythonAnswers::BeginMember(Row const& row)
{
    // The one member of an object that is asked for by itself has no object around it.
    if (!m_open.empty())
        m_open.back().key = py::str(row.name.data(), row.name.size());
    return true;
}

void PythonAnswers::Bytes(void const* bytes, std::size_t size)
{
    Put(py::bytes(size == 0 ? "" : static_cast<char const*>(bytes), size));
}

void PythonAnswers::Numbers(double const* values, std::size_t count)
{
    if (count == kMatrixSize)
        return Put(py::array_t<double>({4, 4}, values));
    py::tuple numbers(count);
    for (std::size_t i = 0; i < count; ++i)
        numbers[i] = values[i];
    Put(std::move(numbers));
}

void PythonAnswers::Put(py::object value)
{
    if (m_open.empty())
        m_answer = std::move(value);
    else if (PyList_Check(m_open.back().value.ptr()))
        py::reinterpret_borrow<py::list>(m_open.back().value).append(value);
    else
        m_open.back().value[m_open.back().key] = value;
}

void PythonAnswers::Close()
{
    Level level = std::move(m_open.back());
    m_open.pop_back();
    if (level.table.empty())
        Put(std::move(level.value));
    else
        Put(m_makeRecord(level.table, level.value));
}

}  // namespace KVR::Python
