#include "tests/exchange/breaks/Breaks.h"

#include <TopExp.hxx>
#include <TopTools_IndexedMapOfShape.hxx>

#include "authoring/SceneWriter.h"
#include "exchange/export/GltfDocument.h"
#include "exchange/export/StepFile.h"
#include "framework/api/DataIdToPersistentIdMap.h"

namespace KVR::Test
{

Breaks& TheBreaks()
{
    static Breaks breaks;
    return breaks;
}

using namespace Authoring;

using Numbers = std::span<double const>;
using SubIds = std::vector<SubEntityId>;

// A member function is called as a function that takes the object first.
#define KVR_BROKEN(wrapped, real, symbol, ...)    \
    void real(__VA_ARGS__) asm("__real_" symbol); \
    void wrapped(__VA_ARGS__) asm("__wrap_" symbol)

KVR_BROKEN(BrokenInstance, RealInstance, "_ZN3KVR9Authoring11SceneWriter8InstanceERKNS0_14InstanceRecordE",
           SceneWriter*, InstanceRecord const&);
KVR_BROKEN(BrokenAssembly, RealAssembly, "_ZN3KVR9Authoring11SceneWriter13BeginAssemblyERKNS0_15ComponentRecordE",
           SceneWriter*, ComponentRecord const&);
KVR_BROKEN(BrokenPart, RealPart, "_ZN3KVR9Authoring11SceneWriter9BeginPartERKNS0_15ComponentRecordE", SceneWriter*,
           ComponentRecord const&);
KVR_BROKEN(BrokenBody, RealBody, "_ZN3KVR9Authoring11SceneWriter4BodyERKNS0_10BodyRecordE", SceneWriter*,
           BodyRecord const&);
KVR_BROKEN(BrokenPoint, RealPoint, "_ZN3KVR9Authoring11SceneWriter5PointERKNS0_11PointRecordE", SceneWriter*,
           PointRecord const&);
KVR_BROKEN(BrokenSet, RealSet, "_ZN3KVR9Authoring11SceneWriter12AttributeSetERKNS0_18AttributeSetRecordE", SceneWriter*,
           AttributeSetRecord const&);
KVR_BROKEN(BrokenCallout, RealCallout, "_ZN3KVR9Authoring11SceneWriter7CalloutERKNS0_13CalloutRecordE", SceneWriter*,
           CalloutRecord const&);
KVR_BROKEN(BrokenVertices, RealVertices,
           "_ZN3KVR9Authoring15MeshStoreWriter8VerticesESt4spanIKdLm18446744073709551615EE", MeshStoreWriter*, Numbers);
KVR_BROKEN(BrokenNormals, RealNormals, "_ZN3KVR9Authoring15MeshStoreWriter7NormalsESt4spanIKdLm18446744073709551615EE",
           MeshStoreWriter*, Numbers);
KVR_BROKEN(BrokenShape, RealShape,
           "_ZN3KVR9Authoring17KernelStoreWriter4BodyERKNS_10UTF8StringERK12TopoDS_ShapeRKSt6vectorINS0_11SubEntityIdE"
           "SaIS9_EESD_",
           KernelStoreWriter*, UTF8String const&, TopoDS_Shape const&, SubIds const&, SubIds const&);
KVR_BROKEN(BrokenIds, RealIds,
           "_ZN3KVR9Authoring27SubObjectPersistentIdWriter6ObjectERKNS_10UTF8StringERKNS_23DataIdToPersistentIdMapE",
           SubObjectPersistentIdWriter*, UTF8String const&, DataIdToPersistentIdMap const&);
KVR_BROKEN(BrokenStep, RealStep, "_ZN3KVR13WriteStepFileENS_13ShapeDocumentERNS_6OutputERKSt8functionIFvPKcdEE",
           ShapeDocument, Output&, TellStage const&);
KVR_BROKEN(BrokenGltf, RealGltf, "_ZN3KVR12GltfDocument5BuildEv", GltfDocument*);

#undef KVR_BROKEN

// Whether the changed copy of a record is handed on.
template <class Change, class Record>
static bool Changed(Change const& change, Record& record)
{
    if constexpr (std::is_same_v<typename Change::result_type, bool>)
        return !change || change(record);
    else if (change)
        change(record);
    return true;
}

template <class Change, class Record>
static void HandOn(Change const& change, void (*real)(SceneWriter*, Record const&), SceneWriter* writer, Record record)
{
    if (Changed(change, record))
        real(writer, record);
}

void BrokenInstance(SceneWriter* writer, InstanceRecord const& record)
{
    HandOn(TheBreaks().instance, &RealInstance, writer, record);
}

void BrokenAssembly(SceneWriter* writer, ComponentRecord const& record)
{
    HandOn(TheBreaks().component, &RealAssembly, writer, record);
}

void BrokenPart(SceneWriter* writer, ComponentRecord const& record)
{
    HandOn(TheBreaks().component, &RealPart, writer, record);
}

void BrokenBody(SceneWriter* writer, BodyRecord const& record)
{
    HandOn(TheBreaks().body, &RealBody, writer, record);
}

void BrokenPoint(SceneWriter* writer, PointRecord const& record)
{
    HandOn(TheBreaks().point, &RealPoint, writer, record);
}

void BrokenSet(SceneWriter* writer, AttributeSetRecord const& record)
{
    HandOn(TheBreaks().attributes, &RealSet, writer, record);
}

void BrokenCallout(SceneWriter* writer, CalloutRecord const& record)
{
    HandOn(TheBreaks().callout, &RealCallout, writer, record);
}

void BrokenVertices(MeshStoreWriter* writer, Numbers numbers)
{
    std::vector<double> changed(numbers.begin(), numbers.end());
    Changed(TheBreaks().vertices, changed);
    RealVertices(writer, changed);
}

void BrokenNormals(MeshStoreWriter* writer, Numbers numbers)
{
    std::vector<double> changed(numbers.begin(), numbers.end());
    Changed(TheBreaks().normals, changed);
    RealNormals(writer, changed);
}

void BrokenShape(KernelStoreWriter* writer, UTF8String const& id, TopoDS_Shape const& shape, SubIds const& faces,
                 SubIds const& edges)
{
    if (!TheBreaks().shape)
        return RealShape(writer, id, shape, faces, edges);
    TopoDS_Shape const changed = TheBreaks().shape(shape);
    // Places beyond the last are refused.
    auto const within = [&changed](SubIds ids, TopAbs_ShapeEnum kind)
    {
        TopTools_IndexedMapOfShape shapes;
        TopExp::MapShapes(changed, kind, shapes);
        std::erase_if(ids, [&](SubEntityId const& sub) { return static_cast<int>(sub.place) >= shapes.Extent(); });
        return ids;
    };
    RealShape(writer, id, changed, within(faces, TopAbs_FACE), within(edges, TopAbs_EDGE));
}

void BrokenIds(SubObjectPersistentIdWriter* writer, UTF8String const& id, DataIdToPersistentIdMap const& ids)
{
    if (!TheBreaks().persistentIds)
        return RealIds(writer, id, ids);
    std::map<std::string, std::string> known;
    for (unsigned long long i = 0; i < ids.Size(); ++i)
        known.emplace(ids.DataIdAt(i).View(), ids.PersistentIdAt(i).View());
    TheBreaks().persistentIds(known);
    EditableDataIdToPersistentIdMap changed;
    for (auto const& [dataId, persistentId] : known)
        changed.Add(UTF8String(dataId), UTF8String(persistentId));
    RealIds(writer, id, changed);
}

void BrokenStep(ShapeDocument document, Output& out, TellStage const& tell)
{
    Changed(TheBreaks().step, document);
    RealStep(std::move(document), out, tell);
}

void BrokenGltf(GltfDocument* document)
{
    RealGltf(document);
    Changed(TheBreaks().gltf, document->Model());
}

}  // namespace KVR::Test
