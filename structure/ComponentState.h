#pragma once

#include <xercesc/dom/DOMNode.hpp>

#include "framework/xml_util/DomWalk.h"
#include "framework/xml_util/FormatNames.h"
#include "framework/xml_util/ObjectState.h"
#include "framework/xml_util/XMLUtils.h"
#include "producer/SideFileIndex.h"
#include "producer/XMLProducerImpl.h"
#include "readers/AttributeSetsState.h"
#include "readers/BooleanText.h"
#include "readers/Ignored.h"
#include "readers/ReferenceReader.h"
#include "readers/UnitReader.h"
#include "readers/UnitState.h"
#include "structure/FilePropertiesHolder.h"
#include "structure/ObjectSetsReader.h"

namespace KVR
{

/// What assemblies and parts have in common.
template <class Interface>
class ComponentState : public UnitState<AttributeSetsState<ObjectState<Interface>>>
{
public:
    KVR::FileProperties* FileProperties() const override { return m_fileProperties.Get(); }
    IdSet Styles() const override { return m_styles; }
    bool IsSingleUnderRoot() const override { return m_isSingleUnderRoot; }

protected:
    explicit ComponentState(XMLProducerImpl* producer)
        : UnitState<AttributeSetsState<ObjectState<Interface>>>(UTF8String(), UTF16String()), m_producer(producer)
    {
    }

    void ReadAttributes(xercesc::DOMNode const* node)
    {
        XMLUtils::GetNodeAttribute(node, Names::ID, this->m_id);
        m_producer->ApplyIdMapping(this->m_id);
        XMLUtils::GetNodeAttribute(node, Names::Label, this->m_label);
        m_isSingleUnderRoot = ReadBoolean(node, Names::IsSingleUnderRoot, kBoolean_IntegerOneElseFalse);
        XMLUtils::GetNodeAttribute(node, Names::VersionPersistentId, this->m_versionPersistentId);
    }

    void ReadUnits(xercesc::DOMNode const* node)
    {
        Ignored(ReadUnit(node, this->m_units.length, this->m_units.displayAngle, this->m_units.displayLength));
        m_hasUnit = true;
    }

    void ReadAttributeSet(xercesc::DOMNode* node)
    {
        Ignored(
            ReadObjectSetsWithViews(m_producer, node, this->m_attributeSets, m_producer->sideFileIndex->vitreolAssets));
    }

    /// Keeps the first element of the older form, unless a "Unit" came before it.
    void KeepUnitAndTolerance(xercesc::DOMNode const* node)
    {
        if (!m_hasUnit && !m_unitAndTolerance)
            m_unitAndTolerance = node;
    }

    /// To be called behind the last child: a "Unit" beats the older form wherever it stood. Tolerances are not kept.
    void ResolveUnits()
    {
        if (m_hasUnit || !m_unitAndTolerance)
            return;
        Ignored(ReadUnitAndTolerance(m_unitAndTolerance, this->m_units.length, nullptr, nullptr, nullptr));
        this->m_units.displayAngle = kUnitType_Unknown;
        this->m_units.displayLength = this->m_units.length;
    }

    XMLProducerImpl* m_producer;
    IdSet m_styles;
    FilePropertiesHolder m_fileProperties;
    bool m_isSingleUnderRoot = false;

private:
    bool m_hasUnit = false;
    xercesc::DOMNode const* m_unitAndTolerance = nullptr;
};

}  // namespace KVR
