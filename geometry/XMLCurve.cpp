#include "geometry/XMLCurve.h"

#include <utility>

#include "framework/api/ICurveData.h"
#include "framework/api/ObjectCollector.h"
#include "framework/api/Subscript.h"
#include "framework/gmk_interface/GMKGlobalDataSaveRestore.h"
#include "framework/gmk_interface/GMKHistoryUtil.h"
#include "framework/kernel/curve.h"
#include "framework/xml_util/FormatNames.h"
#include "framework/xml_util/StoreCursor.h"
#include "framework/xml_util/XMLUtils.h"
#include "geometry/curvedata/CreateCurveData.h"
#include "producer/ElementReaders.h"
#include "producer/XMLProducerImpl.h"
#include "readers/BooleanText.h"
#include "readers/ChangeKeyReader.h"
#include "readers/ExtensionDataReader.h"
#include "readers/Ignored.h"
#include "readers/ReferenceReader.h"
#include "readers/RegisterObject.h"
#include "readers/UnitReader.h"

namespace KVR
{

XMLCurve::XMLCurve(XMLProducerImpl* producer) : UnitState(UTF8String(), UTF16String()), m_producer(producer) {}

XMLCurve::XMLCurve(XMLProducerImpl* producer, std::FILE* store, std::uint32_t kind, bool swapBytes) : XMLCurve(producer)
{
    m_curveData.emplace_back(CreateCurveData(store, kind, swapBytes));
}

XMLCurve::XMLCurve(XMLProducerImpl* producer, StoreCursor& store, std::uint32_t kind) : XMLCurve(producer)
{
    m_curveData.emplace_back(CreateCurveData(store, kind, 0));
}

XMLCurve::~XMLCurve()
{
    if (m_kernelCurves.empty())
        return;
    GMKGlobalDataSaveRestore const guard;
    GMKHistoryUtil::SetActiveHistoryStream(m_producer->GetHistoryStream());
    for (curve* const held : m_kernelCurves)
        GMK::curve_xs(held).destroy();
}

void XMLCurve::ReadCurveData() const
{
    if (m_curveData.empty())
        m_curveData.emplace_back(nullptr);
}

unsigned long long XMLCurve::CurveDataCount() const
{
    ReadCurveData();
    return m_curveData.size();
}

ICurveData* XMLCurve::CurveDataAt(unsigned long long index) const
{
    ReadCurveData();
    return CheckedAt(m_curveData, index).get();
}

void XMLCurve::ReadAttributes(xercesc::DOMNode const* node)
{
    // What is absent is empty, also on an object that is read again.
    UTF8String id;
    UTF8String label;
    UTF8String versionPersistentId;
    XMLUtils::GetNodeAttribute(node, Names::ID, id);
    m_producer->ApplyIdMapping(id);
    XMLUtils::GetNodeAttribute(node, Names::Label, label);
    XMLUtils::GetNodeAttribute(node, Names::VersionPersistentId, versionPersistentId);
    m_id = std::move(id);
    m_label = std::move(label);
    m_versionPersistentId = std::move(versionPersistentId);
    m_visible = ReadBoolean(node, Names::Visibility, kVisibility_OneElseHiddenAbsentShown);
    m_netVisible = ReadBoolean(node, Names::NetVisibility, kVisibility_OneElseHiddenAbsentShown);
}

bool XMLCurve::ReadFromXML(xercesc::DOMNode* node, CurveEntities const& curveEntities)
{
    if (!IsElement(node))
        return false;
    ReadAttributes(node);
    GMK::gmk_array<curve*> picked;
    ExtensionDataContent extensionData;
    auto const pickKernelCurve = [&](xercesc::DOMNode const* child)
    {
        UTF8String id;
        XMLUtils::GetNodeAttribute(child, Names::EntityId, id);
        if (auto const found = curveEntities.find(id); found != curveEntities.end())
            picked.Push(found->second);
    };
    for (xercesc::DOMNode* const child : Children(node))
    {
        Match(child, On(Names::GMKEntity, [&] { pickKernelCurve(child); }),
              // Kept: one content, written over by each element.
              On(Names::ExtensionData, [&] { Ignored(ReadExtensionData(child, extensionData)); }),
              On(Names::Transform, [&] { SetTransform(TransformOf(child)); }),
              On(Names::ChangeKey, [&] { Ignored(ReadChangeKey(child, m_changeKey)); }),
              On(Names::Unit,
                 [&] { Ignored(ReadUnit(child, m_units.length, m_units.displayAngle, m_units.displayLength)); }),
              On(Names::Tolerance,
                 [&] { Ignored(ReadTolerance(child, m_angularTolerance, m_linearTolerance, m_paramTolerance)); }),
              // Kept: these two match in any case, and then read nothing unless written exactly.
              OnAnyCase(Names::Styles, [&] { Ignored(ReadStyleRefs(m_producer, child, m_styles)); }),
              OnAnyCase(Names::NetStyles, [&] { Ignored(ReadStyleRefs(m_producer, child, m_netStyles)); }));
    }
    m_kernelCurves = std::move(picked);
    if (!extensionData.TypeId().IsEmpty())
        AddExtensionDataContent(extensionData);
    return true;
}

bool ReadCurveFromStore(XMLProducerImpl* producer, xercesc::DOMNode* node, CurveStore& curveStore, UTF8String& id)
{
    XMLUtils::GetNodeAttribute(node, Names::ID, id);
    producer->ApplyIdMapping(id);
    if (IsTaken(*producer, node, id))
        return true;
    // Kept: looked up by the mapped id, although the store knows the document's.
    auto const found = curveStore.find(id);
    if (found == curveStore.end() || !found->second.owned)
    {
        TellObserver(&ReadObserver::ElementDropped, node, DropReason::kNoRecord);
        return false;
    }
    std::unique_ptr<XMLCurve> held = std::move(found->second.owned);
    Ignored(held->ReadFromXML(node, CurveEntities()));
    Register(*producer, node, std::move(held));
    return true;
}

}  // namespace KVR
