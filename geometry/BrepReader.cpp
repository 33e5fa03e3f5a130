#include "geometry/BrepReader.h"

#include <memory>
#include <utility>
#include <vector>

#include "framework/api/ObjectCollector.h"
#include "framework/api/SubEntityToStylesMap.h"
#include "framework/kernel/entity.h"
#include "framework/xml_util/DomWalk.h"
#include "framework/xml_util/EnumTexts.h"
#include "framework/xml_util/FormatNames.h"
#include "framework/xml_util/XMLBrep.h"
#include "framework/xml_util/XMLStrUtil.h"
#include "framework/xml_util/XMLUtils.h"
#include "geometry/KernelStore.h"
#include "producer/ElementReaders.h"
#include "producer/XMLProducerImpl.h"
#include "readers/BooleanText.h"
#include "readers/ChangeKeyReader.h"
#include "readers/ExtensionDataReader.h"
#include "readers/Ignored.h"
#include "readers/NodeAttributes.h"
#include "readers/ReferenceReader.h"
#include "readers/RegisterObject.h"
#include "readers/UnitReader.h"
#include "readers/UnitState.h"

namespace KVR
{

namespace
{

using xercesc::DOMNode;

// What an element says, with the format's defaults.
struct BrepFields
{
    UTF16String label;
    IBrep::ProducerGeometryTypeEnum type = IBrep::kProducerGeometryType_BrepSolid;
    bool isVisible = false;
    bool isNetVisible = false;
    UTF8String versionPersistentId;
    ChangeKeyText changeKey;
    Units units;
    double angularTolerance = -1.0;
    double linearTolerance = -1.0;
    double paramTolerance = -1.0;
    std::vector<ExtensionDataContent> extensionData;
    IdSet styles;
    IdSet netStyles;
    SubEntityToStylesMap subEntityStyles;
    EditableDataIdToPersistentIdMap persistentIds;
    Matrix3d transform;
};

class BrepElement
{
public:
    BrepElement(XMLProducerImpl* producer, BODY* body) : m_producer(producer), m_body(body) {}

    void Read(DOMNode* node, UTF8String const& id)
    {
        ReadAttributes(node);
        for (DOMNode* const child : Children(node))
            ReadChild(child);
        LoadObjectPersistentIds(m_producer, node, id, fields.persistentIds);
        if (m_unitAndTolerance && !m_hasUnit)
            ReadOlderUnits();
    }

    std::unique_ptr<XMLBrep> Make(UTF8String const& id)
    {
        auto brep = std::make_unique<XMLBrep>(id, fields.label, m_body, fields.type);
        XMLObject& object = *brep;
        object.SetChangeKey(std::move(fields.changeKey));
        // Kept: the length unit stays unsaid.
        brep->SetDisplayAngleUnit(fields.units.displayAngle);
        brep->SetDisplayLengthUnit(fields.units.displayLength);
        object.AddExtensionDataContent(fields.extensionData);
        object.SetVersionPersistentId(fields.versionPersistentId);
        brep->GMKBrep::SetVersionPersistentId(fields.versionPersistentId);
        if (fields.angularTolerance > 0.0)
            brep->SetAngularTolerance(fields.angularTolerance);
        if (fields.linearTolerance > 0.0)
            brep->SetLinearTolerance(fields.linearTolerance);
        if (fields.paramTolerance > 0.0)
            brep->SetParamTolerance(fields.paramTolerance);
        brep->SetVisible(fields.isVisible);
        brep->SetNetVisibility(fields.isNetVisible);
        brep->SetStyles(std::move(fields.styles));
        brep->SetNetStyles(std::move(fields.netStyles));
        brep->AppendStylesToMap(fields.subEntityStyles);
        brep->AppendPersistentIDsToMap(fields.persistentIds);
        brep->SetTransform(fields.transform);
        return brep;
    }

    BrepFields fields;

private:
    void ReadAttributes(DOMNode const* node)
    {
        XMLUtils::GetNodeAttribute(node, Names::Label, fields.label);
        Ignored(ProducerGeometryTypeFromText(AttributeOrEmpty(node, Names::Type), fields.type));
        XMLUtils::GetNodeAttribute(node, Names::VersionPersistentId, fields.versionPersistentId);
        fields.isNetVisible = ReadBoolean(node, Names::NetVisibility, kVisibility_OneElseHidden);
        fields.isVisible = ReadBoolean(node, Names::Visibility, kVisibility_OneElseHidden);
    }

    void ReadChild(DOMNode* child)
    {
        Units& units = fields.units;
        auto const readUnit = [&]
        {
            Ignored(ReadUnit(child, units.length, units.displayAngle, units.displayLength));
            m_hasUnit = true;
        };
        auto const readTolerance = [&]
        {
            Ignored(ReadTolerance(child, fields.angularTolerance, fields.linearTolerance, fields.paramTolerance));
            m_hasUnit = true;
        };
        Match(child,  //
              On(Names::ChangeKey, [&] { Ignored(ReadChangeKey(child, fields.changeKey)); }),
              On(Names::Unit, readUnit),            //
              On(Names::Tolerance, readTolerance),  //
              On(Names::ExtensionData, [&] { Ignored(ReadExtensionData(child, fields.extensionData.emplace_back())); }),
              On(Names::UnitAndTolerance,
                 [&]
                 {
                     if (!m_unitAndTolerance && !m_hasUnit)
                         m_unitAndTolerance = child;
                 }),
              On(Names::Styles, [&] { Ignored(ReadStyleRefs(m_producer, child, fields.styles)); }),
              On(Names::NetStyles, [&] { ReadNetStyles(child); }),  //
              On(Names::Transform,
                 [&]
                 {
                     TellObserver(&ReadObserver::LastCounts, child);
                     XMLStrUtil::GetTransfFromStr(TextContent(child), fields.transform);
                 }),
              On(Names::Face, [&] { ReadSubEntity(child); }),  //
              On(Names::Edge, [&] { ReadSubEntity(child); }));
    }

    void ReadNetStyles(DOMNode const* child) { Ignored(ReadStyleRefs(m_producer, child, fields.netStyles)); }

    void ReadOlderUnits()
    {
        Units& units = fields.units;
        Ignored(ReadUnitAndTolerance(m_unitAndTolerance, units.length, &fields.angularTolerance,
                                     &fields.linearTolerance, &fields.paramTolerance));
        units.displayAngle = kUnitType_Unknown;
        units.displayLength = units.length;
    }

    // The styles of a face or edge, by its data id as the kernel has it.
    void ReadSubEntity(DOMNode const* node)
    {
        if (!m_body)
            return;
        UTF8String dataId;
        XMLUtils::GetNodeAttribute(node, Names::ID, dataId);
        for (DOMNode const* const child : Children(node))
        {
            if (!IsNamed(child, Names::Styles))
                continue;
            IdSet styles;
            Ignored(ReadStyleRefs(m_producer, child, styles));
            // One call for each element, so that the last one counts.
            fields.subEntityStyles.SetStyles(dataId, styles);
        }
    }

    XMLProducerImpl* m_producer;
    BODY* m_body;
    bool m_hasUnit = false;
    DOMNode const* m_unitAndTolerance = nullptr;
};

}  // namespace

bool ProducerGeometryTypeFromText(XMLCh const* text, IBrep::ProducerGeometryTypeEnum& type)
{
    return ValueOfDocumentText(kProducerGeometryTypeTexts, text, type);
}

bool ReadBrep(XMLProducerImpl* producer, DOMNode* node, BodyEntities& bodyEntities, UTF8String& id)
{
    id = UTF8String();
    XMLUtils::GetNodeAttribute(node, Names::ID, id);
    auto const found = bodyEntities.find(id);
    BrepElement element(producer, found == bodyEntities.end() ? nullptr : GMK::BODY_xs(found->second).body);
    element.Read(node, id);
    producer->ApplyIdMapping(id);
    if (!IsTaken(*producer, node, id))
        Register(*producer, node, element.Make(id));
    return true;
}

}  // namespace KVR
