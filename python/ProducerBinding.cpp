#include <pybind11/stl.h>

#include "describe/ReferenceWalk.h"
#include "describe/Tables.h"
#include "framework/api/IUniverse.h"
#include "host/dump/Dump.h"
#include "host/dump/DumpOptions.h"
#include "output/Output.h"
#include "python/Bindings.h"
#include "python/InterfaceTables.h"
#include "python/PythonAnswers.h"
#include "python/SceneSource.h"

namespace KVR::Python
{

namespace
{

using SourcePointer = std::shared_ptr<SceneSource>;

// Something that a table describes; the scene lives as long as it does.
struct ObjectHandle
{
    SourcePointer source;
    DescribedObject described;
};

// A row of a table or of its bases, with the object as its class.
struct FoundRow
{
    Row const* row = nullptr;
    void const* object = nullptr;
};

FoundRow Find(Interface const& table, void const* object, std::string_view name)
{
    for (Row const& row : table.rows)
    {
        if (row.base)
        {
            if (FoundRow const found = Find(*row.base, row.toBase(object), name); found.row)
                return found;
        }
        else if (row.name == name)
        {
            return {&row, object};
        }
    }
    return {};
}

py::object Ask(ObjectHandle const& handle, std::string_view name, std::vector<std::string> const& extensionTypeIds,
               py::object const& makeRecord)
{
    FoundRow const found = Find(*handle.described.interface, handle.described.object, name);
    if (!found.row)
        throw py::attribute_error(std::string(name));
    IUniverse const* const universe = handle.source->Producer().LoadUniverse();
    PythonAnswers answers(makeRecord);
    found.row->tell(found.object, Telling{.to = answers,
                                          .properties = universe ? universe->PropertyDatabaseOf() : nullptr,
                                          .extensionTypeIds = extensionTypeIds,
                                          .everything = true});
    return answers.Take();
}

template <class T>
py::object HandleOf(SourcePointer const& source, T const* object)
{
    if (!object)
        return py::none();
    return py::cast(ObjectHandle{source, {&TableOf<T>::kTable, object}});
}

py::object Load(ProducerHandle const& handle, std::string const& id)
{
    IObject* const object = handle.Source().Producer().Load(UTF8String(id));
    DescribedObject const described = object ? DescribedObject::Of(*object) : DescribedObject{};
    return described.interface ? py::cast(ObjectHandle{handle.source, described}) : py::object(py::none());
}

py::list ReachedIds(ProducerHandle const& handle)
{
    py::list ids;
    ReferenceWalk walk(handle.Source().Producer());
    walk.Reach(handle.Source().RootId());
    while (walk.Next())
        ids.append(Text(walk.Id().View()));
    return ids;
}

void Dump(ProducerHandle const& handle, int descriptor, DumpOptions const& options)
{
    SceneSource& source = handle.Source();
    Output out(descriptor);
    WriteDump(source.Producer(), source.Reading(), options, out);
    out.Flush();
}

py::list Events(ProducerHandle const& handle)
{
    py::list events;
    for (Failure const& event : handle.Source().Reading().events)
        events.append(py::make_tuple(Text(event.type), Text(event.fileName.value_or(event.message.value_or(""))),
                                     event.errorCode.value_or(0)));
    return events;
}

py::list SideFileProblems(ProducerHandle const& handle)
{
    py::list problems;
    for (std::string const& problem : handle.Source().Reading().sideFileProblems)
        problems.append(Text(problem));
    return problems;
}

ProducerHandle Open(SceneOptions const& options)
{
    py::gil_scoped_release const released;
    return {std::make_shared<SceneSource>(options)};
}

void BindHandles(py::module_& module)
{
    py::class_<ObjectHandle>(module, "Object")
        .def_property_readonly(
            "table", [](ObjectHandle const& handle) { return handle.described.interface->name; },
            "The name of its table.")
        .def("ask", &Ask, py::arg("name"), py::arg("extension_type_ids"), py::arg("make_record"),
             "What it answers to the operation of that name.")
        .def(
            "__eq__",
            [](ObjectHandle const& a, ObjectHandle const& b) { return a.described.object == b.described.object; },
            py::is_operator())
        .def("__hash__", [](ObjectHandle const& handle) { return std::hash<void const*>()(handle.described.object); });
}

}  // namespace

void BindProducer(py::module_& module)
{
    module.def("interface_tables", &InterfaceTablesJson, "The tables of the interfaces, as JSON.");
    BindHandles(module);
    py::class_<ProducerHandle>(module, "Producer", KVR_DOC(IProducer, IProducer))
        .def(py::init(
                 [](std::string path, std::optional<std::string> prefix, bool insecure, bool allowDtd, bool strict,
                    std::optional<std::uint64_t> maxMemory) {
                     return Open({std::move(path), std::move(prefix), insecure, allowDtd, strict, maxMemory});
                 }),
             py::arg("path"), py::kw_only(), py::arg("prefix") = py::none(), py::arg("insecure") = false,
             py::arg("allow_dtd") = false, py::arg("strict") = false, py::arg("max_memory") = py::none())
        .def(
            "close", [](ProducerHandle& handle) { handle.source.reset(); },
            "Lets go of the scene; what was taken out of it keeps it alive.")
        .def_property_readonly("closed", [](ProducerHandle const& handle) { return !handle.source; })
        .def_property_readonly("path", [](ProducerHandle const& handle) { return Text(handle.Source().Path()); })
        .def_property_readonly("events", &Events, "What was told while the scene was read: kind, file or text, code.")
        .def_property_readonly("side_file_problems", &SideFileProblems, KVR_DOC(SceneReading, sideFileProblems))
        .def("reached_ids", &ReachedIds, "The ids that are reached from the root, each once, in the order of a dump.")
        .def("_load", &Load, py::arg("id"))
        .def("_self", [](ProducerHandle const& handle)
             { return HandleOf<IProducer>(handle.source, &handle.Source().Producer()); })
        .def("_query",
             [](ProducerHandle const& handle) { return HandleOf(handle.source, handle.Source().Reading().query); })
        .def("_universe", [](ProducerHandle const& handle)
             { return HandleOf(handle.source, handle.Source().Producer().LoadUniverse()); })
        .def("_dump",
             [](ProducerHandle const& handle, int descriptor, std::vector<std::string> ids,
                std::vector<std::string> extensionTypeIds, bool summary, bool mass) {
                 Dump(handle, descriptor, {std::move(ids), std::move(extensionTypeIds), summary, mass});
             });
}

}  // namespace KVR::Python
