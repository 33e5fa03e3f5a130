#pragma once

#include <xercesc/dom/DOMNode.hpp>

#include "framework/xml_util/DomWalk.h"
#include "framework/xml_util/FormatNames.h"
#include "framework/xml_util/ObjectState.h"
#include "framework/xml_util/XMLUtils.h"
#include "producer/XMLProducerImpl.h"
#include "readers/ExtensionDataReader.h"
#include "readers/Ignored.h"
#include "readers/ReferenceReader.h"
#include "readers/TransformState.h"
#include "readers/UnitReader.h"
#include "readers/UnitState.h"

namespace KVR
{

/// How many bundles of geometry are read in one another; those beyond are dropped.
inline constexpr unsigned kDeepestBundle = 1000;

/// What geometric sets and extension geometry have in common: a bundle of geometry that is kept by its ids.
template <class Interface>
class GeometryBundleState : public UnitState<TransformState<ObjectState<Interface>>>
{
public:
    double AngularTolerance() const override { return m_angularTolerance; }
    double LinearTolerance() const override { return m_linearTolerance; }
    double ParamTolerance() const override { return m_paramTolerance; }
    bool IsVisible() const override { return m_visible; }
    bool IsNetVisible() const override { return m_netVisible; }
    IdSet Styles() const override { return m_styles; }
    IdSet NetStyles() const override { return m_netStyles; }
    unsigned long long ChildCount() const override { return m_childIds.Size(); }

protected:
    GeometryBundleState(XMLProducerImpl* producer, unsigned depth)
        : UnitState<TransformState<ObjectState<Interface>>>(UTF8String(), UTF16String()),
          m_producer(producer),
          m_depth(depth)
    {
    }

    void ReadAttributes(xercesc::DOMNode const* node)
    {
        XMLUtils::GetNodeAttribute(node, Names::ID, this->m_id);
        XMLUtils::GetNodeAttribute(node, Names::Label, this->m_label);
        XMLUtils::GetNodeAttribute(node, Names::Visibility, m_visible);
        XMLUtils::GetNodeAttribute(node, Names::NetVisibility, m_netVisible);
        XMLUtils::GetNodeAttribute(node, Names::VersionPersistentId, this->m_versionPersistentId);
        m_producer->ApplyIdMapping(this->m_id);
    }

    /// The rows that both have; whether the child was one of them.
    bool ReadCommonChild(xercesc::DOMNode* child)
    {
        return Match(
            child,  //
            On(Names::Unit,
               [&] {
                   Ignored(
                       ReadUnit(child, this->m_units.length, this->m_units.displayAngle, this->m_units.displayLength));
               }),
            // Kept: this and the styles match in any case, and then read nothing unless written exactly.
            OnAnyCase(Names::Tolerance,
                      [&] { Ignored(ReadTolerance(child, m_angularTolerance, m_linearTolerance, m_paramTolerance)); }),
            On(Names::ExtensionData, [&] { AddExtensionData(child, *this); }),  //
            On(Names::Transform, [&] { this->KeepTransformButIdentity(child); }),
            OnAnyCase(Names::Styles, [&] { Ignored(ReadStyleRefs(m_producer, child, m_styles)); }),
            OnAnyCase(Names::NetStyles, [&] { Ignored(ReadStyleRefs(m_producer, child, m_netStyles)); }));
    }

    XMLProducerImpl* m_producer;
    /// How many bundles stand around this one.
    unsigned m_depth;
    IdSet m_childIds;

private:
    double m_angularTolerance = -1.0;
    double m_linearTolerance = -1.0;
    double m_paramTolerance = -1.0;
    bool m_visible = true;
    bool m_netVisible = true;
    IdSet m_styles;
    IdSet m_netStyles;
};

}  // namespace KVR
