#pragma once

#include <pybind11/pybind11.h>

#include <memory>
#include <string_view>

#include <DocTexts.h>

/// The comment of a header on Class::Member, made a text by generate/make_doc_texts.py.
#define KVR_DOC(Class, Member) (::KVR::Python::DocTexts::Class##_##Member)

namespace KVR::Python
{

namespace py = pybind11;

class SceneSource;

/// What kvr.Producer stands on. Closing it lets go of the scene, which ends when nothing else has it.
struct ProducerHandle
{
    std::shared_ptr<SceneSource> source;

    /// Throws ValueError when it is closed.
    SceneSource& Source() const
    {
        if (!source)
            throw py::value_error("the producer is closed");
        return *source;
    }
};

/// A text of a scene; bytes that are no UTF-8 become U+FFFD.
inline py::str Text(std::string_view text)
{
    PyObject* const decoded = PyUnicode_DecodeUTF8(text.data(), static_cast<Py_ssize_t>(text.size()), "replace");
    if (!decoded)
        throw py::error_already_set();
    return py::reinterpret_steal<py::str>(decoded);
}

void BindProducer(py::module_& module);
void BindScene(py::module_& module);
void BindOccurrences(py::module_& module);
void BindGeometry(py::module_& module);
void BindExchange(py::module_& module);
void BindWriter(py::module_& module);
void BindComparison(py::module_& module);

}  // namespace KVR::Python
