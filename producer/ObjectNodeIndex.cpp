// The dispatcher: turns noted elements into objects. This file alone knows all object classes.

#include "producer/ObjectNodeIndex.h"

#include <algorithm>
#include <memory>
#include <utility>

#include "framework/api/IComponent.h"
#include "framework/xml_util/DomWalk.h"
#include "framework/xml_util/FormatNames.h"
#include "framework/xml_util/XMLUtils.h"
#include "geometry/XMLCurve.h"
#include "geometry/XMLGeometricSet.h"
#include "geometry/XMLPoint.h"
#include "geometry/XMLPointCloud.h"
#include "geometry/XMLSketch.h"
#include "geometry/XMLWorkAxis.h"
#include "geometry/XMLWorkPlane.h"
#include "geometry/XMLWorkPoint.h"
#include "producer/ElementReaders.h"
#include "producer/SideFileIndex.h"
#include "producer/XMLProducerImpl.h"
#include "readers/Ignored.h"
#include "readers/RegisterObject.h"
#include "structure/XMLAssembly.h"
#include "structure/XMLFile.h"
#include "structure/XMLPart.h"

namespace KVR
{

namespace
{

using xercesc::DOMNode;

// Kept: "IAnnotationCalloutElement" is not among them, although the dispatcher knows the name: it is read only inside
// its callout.
constexpr ElementName kObjectNames[] = {
    Names::IFile,         Names::IAnnotationCallout,
    Names::IAssembly,     Names::IPart,
    Names::IInstance,     Names::IBrep,
    Names::IPoint,        Names::IPolygonMesh,
    Names::IGeometricSet, Names::IExtensionGeometry,
    Names::ICurve,        Names::ISketch,
    Names::IPointCloud,   Names::IWorkPoint,
    Names::IWorkAxis,     Names::IWorkPlane,
};

// A component stays registered also when its reading failed half-way.
template <class Component>
void ReadComponent(XMLProducerImpl& producer, DOMNode* node)
{
    SideFileIndex& index = *producer.sideFileIndex;
    auto component = std::make_unique<Component>(&producer);
    Ignored(component->ReadFromXML(node, index.bodyEntities, index.curveEntities, index.meshStore, index.curveStore));
    Register(producer, node, std::move(component));
}

}  // namespace

ObjectNodeIndex::ObjectNodeIndex() = default;
ObjectNodeIndex::~ObjectNodeIndex() = default;

bool ObjectNodeIndex::IsObjectName(XMLCh const* name)
{
    return std::any_of(std::begin(kObjectNames), std::end(kObjectNames),
                       [&](ElementName const& object) { return Equals(name, object); });
}

std::span<ElementName const> ObjectNodeIndex::ObjectNames() noexcept
{
    return kObjectNames;
}

void ObjectNodeIndex::AddNode(DOMNode* node)
{
    UTF8String id;
    XMLUtils::GetNodeAttribute(node, Names::ID, id);
    DOMNode*& noted = m_nodes[id];
    TellObserver(&ReadObserver::NodeNoted, node, noted);
    noted = node;
}

void ObjectNodeIndex::ReadAllNodes(XMLProducerImpl* producer)
{
    m_producer = producer;
    m_depth = 0;
    for (Nodes::value_type& entry : m_nodes)
    {
        if (entry.second)
            Ignored(DispatchNode(entry));
    }
    ChooseRootFile();
    // Nobody asks for the files again, and the host may dispose of them.
    m_files.clear();
}

ReferenceEnd ObjectNodeIndex::EndOf(Nodes::const_iterator found) const
{
    if (found == m_nodes.end())
        return ReferenceEnd::kUnknown;
    if (!found->second)
        return ReferenceEnd::kTaken;
    return m_depth >= kDeepestReference ? ReferenceEnd::kTooDeep : ReferenceEnd::kRead;
}

bool ObjectNodeIndex::ReadNodeById(UTF8String const& id)
{
    auto const found = m_nodes.find(id);
    if (ReadObserver* const observer = Observer()) [[unlikely]]
        observer->NodeAsked(id, EndOf(found));
    return found == m_nodes.end() || DispatchNode(*found);
}

bool ObjectNodeIndex::DispatchNode(Nodes::value_type& entry)
{
    if (!entry.second || m_depth >= kDeepestReference)
        return false;
    DOMNode* const node = entry.second;
    // From here on the element counts as done, so that a reference that leads back to it ends.
    entry.second = nullptr;
    ++m_depth;
    TellObserver(&ReadObserver::NodeBegun, node);
    Outcome const outcome = ReadObject(node);
    TellObserver(&ReadObserver::NodeEnded, node);
    --m_depth;
    if (!outcome.isDone)
        entry.second = node;
    return outcome.answer;
}

// An object whose reader failed leaves its element where it is.
template <class Object, class... Sources>
ObjectNodeIndex::Outcome ObjectNodeIndex::ReadOrKeep(DOMNode* node, Sources&... sources)
{
    bool const isRead = ReadAndRegister<Object>(m_producer, node, sources...) != nullptr;
    return {isRead, isRead};
}

// A row per object name. The element is done with, whatever became of the object, unless a row says otherwise.
ObjectNodeIndex::Outcome ObjectNodeIndex::ReadObject(DOMNode* node)
{
    SideFileIndex& index = *m_producer->sideFileIndex;
    Outcome outcome;
    bool const isKnown = Match(
        node, On(Names::IFile, [&] { ReadFile(node); }),
        On(Names::IAssembly, [&] { ReadComponent<XMLAssembly>(*m_producer, node); }),
        On(Names::IPart, [&] { ReadComponent<XMLPart>(*m_producer, node); }),
        On(Names::IInstance, [&] { Ignored(ReadInstance(node, *this)); }), On(Names::IBrep, [&] { ReadBody(node); }),
        On(Names::ICurve, [&] { outcome = ReadCurve(node); }), On(Names::IPolygonMesh, [&] { ReadMesh(node); }),
        On(Names::IExtensionGeometry,
           [&]
           {
               Ignored(ReadExtensionGeometry(m_producer, node, index.bodyEntities, index.curveEntities, index.meshStore,
                                             index.curveStore));
           }),
        On(Names::IGeometricSet,
           [&]
           {
               outcome = ReadOrKeep<XMLGeometricSet>(node, index.bodyEntities, index.curveEntities, index.meshStore,
                                                     index.curveStore);
           }),
        // Kept: done in any case, where the others that fail stay.
        On(Names::IPoint, [&] { Ignored(ReadAndRegister<XMLPoint>(m_producer, node)); }),
        // What a sketch that failed has left registered a second reading would register again.
        On(Names::ISketch, [&] { outcome.answer = ReadOrKeep<XMLSketch>(node, index.curveEntities).answer; }),
        On(Names::IPointCloud, [&] { outcome = ReadOrKeep<XMLPointCloud>(node); }),
        On(Names::IWorkAxis, [&] { outcome = ReadOrKeep<XMLWorkAxis>(node); }),
        On(Names::IWorkPlane, [&] { outcome = ReadOrKeep<XMLWorkPlane>(node); }),
        On(Names::IWorkPoint, [&] { outcome = ReadOrKeep<XMLWorkPoint>(node); }),
        On(Names::IAnnotationCallout,
           [&] {
               Ignored(ReadAnnotationCallout(m_producer, node, index.curveEntities, index.meshStore, index.curveStore));
           }),
        On(Names::IAnnotationCalloutElement,
           [&] {
               Ignored(ReadAnnotationCalloutElement(m_producer, node, index.curveEntities, index.meshStore,
                                                    index.curveStore));
           }));
    outcome.isDone = outcome.isDone && isKnown;
    return outcome;
}

void ObjectNodeIndex::ReadBody(DOMNode* node)
{
    UTF8String id;
    Ignored(ReadBrep(m_producer, node, m_producer->sideFileIndex->bodyEntities, id));
}

void ObjectNodeIndex::ReadMesh(DOMNode* node)
{
    UTF8String id;
    Ignored(ReadPolygonMesh(m_producer, node, m_producer->sideFileIndex->meshStore, id));
}

// A curve may come from a store or from the kernel, and both are tried.
ObjectNodeIndex::Outcome ObjectNodeIndex::ReadCurve(DOMNode* node)
{
    SideFileIndex& index = *m_producer->sideFileIndex;
    index.ReadDeferredStores();
    bool const hasStore = !index.curveStore.empty();
    Outcome outcome{false, hasStore};
    UTF8String id;
    if (hasStore)
        outcome.isDone = ReadCurveFromStore(m_producer, node, index.curveStore, id);
    if (index.curveEntities.empty())
    {
        if (!outcome.isDone)
            TellObserver(&ReadObserver::ElementDropped, node, DropReason::kNoRecord);
        return outcome;
    }
    // Kept: looked up by the id as written, also when ids are mapped.
    UTF8String writtenId;
    XMLUtils::GetNodeAttribute(node, Names::ID, writtenId);
    if (m_producer->objectCollector->HasObject(writtenId))
        return outcome;
    auto curve = std::make_unique<XMLCurve>(m_producer);
    outcome.answer = curve->ReadFromXML(node, index.curveEntities);
    if (outcome.answer)
    {
        Register(*m_producer, node, std::move(curve));
        outcome.isDone = true;
    }
    return outcome;
}

void ObjectNodeIndex::ReadFile(DOMNode* node)
{
    auto owned = std::make_unique<XMLFile>(UTF16String(), m_producer);
    XMLFile* const file = owned.get();
    Ignored(file->ReadFromXML(node));
    Register(*m_producer, node, std::move(owned));
    if (file->IsRoot())
    {
        m_producer->rootId = std::make_unique<RootId>(file);
        m_rootFound = true;
    }
    m_files.push_back(file);
}

void ObjectNodeIndex::SetRoot(XMLFile* file)
{
    file->SetRoot();
    m_producer->rootId = std::make_unique<RootId>(file);
}

// A lone file is the root. Of several, the first that has a component which says that it alone stands under the root.
void ObjectNodeIndex::ChooseRootFile()
{
    if (m_rootFound || m_files.empty())
        return;
    if (m_files.size() == 1)
    {
        SetRoot(m_files.front());
        return;
    }
    for (XMLFile* const file : m_files)
    {
        for (UTF8String const& childId : file->ChildIds())
        {
            auto const* const component = dynamic_cast<IComponent const*>(m_producer->Load(childId));
            if (component && component->IsSingleUnderRoot())
            {
                SetRoot(file);
                return;
            }
        }
    }
}

}  // namespace KVR
