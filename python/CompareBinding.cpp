#include <pybind11/stl.h>

#include <cstdint>
#include <optional>
#include <string>
#include <utility>

#include "host/stats/StatsOutput.h"
#include "inspect/Compare.h"
#include "inspect/Digest.h"
#include "inspect/statistics/OccurrenceStatistics.h"
#include "inspect/statistics/ReadingMeter.h"
#include "output/Output.h"
#include "python/Bindings.h"
#include "python/SceneSource.h"
#include "scene/Scene.h"

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
                                py::arg("first") = Text(change.first), py::arg("second") = Text(change.second),
                                py::arg("distance") = change.distance, py::arg("angle") = change.angle));
    }
    return changes;
}

py::str Digest(ProducerHandle const& producer)
{
    return Text(DigestScene(producer.Source().Producer()).whole.Text());
}

// Reads the scene anew, since the readers have to be listened to, and writes JSON to the descriptor.
void Statistics(int descriptor, SceneOptions const& options, std::size_t most)
{
    py::gil_scoped_release const released;
    ReadingLock const lock;
    ReadingMeter meter(options.prefix.has_value());
    SceneSource const source(options);
    meter.Stop();
    KVR::Scene const scene(source.Producer(), source.RootId());
    SceneStatistics const statistics = SceneStatistics::Of(scene, meter);
    OccurrenceStatistics const occurrences(scene, statistics, most);
    Output out(descriptor);
    WriteStatsAsJson({scene, statistics, occurrences, source.Path(), most}, out);
    out.Flush();
}

}  // namespace

void BindComparison(py::module_& module)
{
    module.def("compare", &Compare, KVR_DOC(Free, CompareScenes));
    module.def("digest", &Digest, KVR_DOC(Free, DigestScene));
    module.def(
        "statistics",
        [](int descriptor, std::string path, std::size_t most, std::optional<std::string> prefix, bool insecure,
           bool allowDtd, bool strict, std::optional<std::uint64_t> maxMemory) {
            Statistics(descriptor, {std::move(path), std::move(prefix), insecure, allowDtd, strict, maxMemory}, most);
        },
        "What kvr stats --json prints, written to a file that is open.", py::arg("descriptor"), py::arg("path"),
        py::arg("most"), py::kw_only(), py::arg("prefix") = py::none(), py::arg("insecure") = false,
        py::arg("allow_dtd") = false, py::arg("strict") = false, py::arg("max_memory") = py::none());
}

}  // namespace KVR::Python
