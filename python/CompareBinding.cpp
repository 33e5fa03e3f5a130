#include "inspect/Compare.h"
#include "inspect/Digest.h"
#include "python/Bindings.h"
#include "python/SceneSource.h"

namespace KVR::Python
{

namespace
{

py::list Compare(ProducerHandle const& first, ProducerHandle const& second)
{
    py::list changes;
    for (SceneChange const& change : CompareScenes(first.Source().Producer(), second.Source().Producer()).changes)
    {
        changes.append(py::dict(py::arg("kind") = Text(TextOf(change.kind)), py::arg("path") = Text(change.path),
                                py::arg("first_id") = Text(change.firstId),
                                py::arg("second_id") = Text(change.secondId),
                                py::arg("class_name") = Text(change.className),
                                py::arg("occurrences") = change.occurrences, py::arg("what") = Text(change.what),
                                py::arg("first") = Text(change.first), py::arg("second") = Text(change.second)));
    }
    return changes;
}

py::str Digest(ProducerHandle const& producer)
{
    return Text(DigestScene(producer.Source().Producer()).whole.Text());
}

}  // namespace

void BindComparison(py::module_& module)
{
    module.def("compare", &Compare, KVR_DOC(Free, CompareScenes));
    module.def("digest", &Digest, KVR_DOC(Free, DigestScene));
}

}  // namespace KVR::Python
