// The module kvr._core: what the package kvr is made of.

#include <utility>
#include <xercesc/util/PlatformUtils.hpp>

#include "framework/api/Exception.h"
#include "inspect/query/Query.h"
#include "python/Bindings.h"
#include "python/Cancelled.h"
#include "python/SceneSource.h"
#include "scene/SceneFilter.h"

namespace KVR::Python
{

namespace
{

void BindExceptions(py::module_& module)
{
    // The module keeps them; nothing of Python is to be destroyed when the program ends.
    static PyObject* const error = py::exception<Exception>(module, "Error").release().ptr();
    static PyObject* const sceneError = py::exception<SceneError>(module, "SceneError", error).release().ptr();
    static PyObject* const cancelled = py::exception<Cancelled>(module, "Cancelled", error).release().ptr();
    static PyObject* const queryError = py::exception<QueryError>(module, "QueryError", error).release().ptr();
    static PyObject* const fileError = py::exception<FileException>(module, "FileError", error).release().ptr();
    py::register_exception_translator(
        [](std::exception_ptr thrown)
        {
            try
            {
                if (thrown)
                    std::rethrow_exception(std::move(thrown));
            }
            catch (SceneError const& problem)
            {
                PyErr_SetString(sceneError, problem.what());
            }
            catch (QueryError const& problem)
            {
                PyErr_SetString(queryError, problem.what());
            }
            catch (SceneFilterError const& problem)
            {
                PyErr_SetString(sceneError, problem.what());
            }
            catch (Cancelled const& problem)
            {
                PyErr_SetString(cancelled, problem.what());
            }
            catch (FileException const& problem)
            {
                PyErr_SetString(fileError, problem.what());
            }
            catch (Exception const& problem)
            {
                PyErr_SetString(error, problem.what());
            }
        });
}

}  // namespace

}  // namespace KVR::Python

PYBIND11_MODULE(_core, module)
{
    using namespace KVR::Python;
    // Held for good: producers count their uses, which is not safe when a last one ends beside a first one.
    xercesc::XMLPlatformUtils::Initialize();
    BindExceptions(module);
    BindProducer(module);
    BindScene(module);
    BindOccurrences(module);
    BindGeometry(module);
    BindExchange(module);
    BindWriter(module);
    BindComparison(module);
}
