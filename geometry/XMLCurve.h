#pragma once

#include <cstdint>
#include <cstdio>
#include <memory>
#include <vector>
#include <xercesc/dom/DOMNode.hpp>

#include "framework/gmk_interface/GMKCurve.h"
#include "framework/xml_util/ObjectState.h"
#include "producer/SideFileIndex.h"
#include "readers/TransformState.h"
#include "readers/UnitState.h"

namespace KVR
{

class StoreCursor;
class XMLProducerImpl;

/// A free-standing curve with one of two contents: curves of the kernel, which its element names, or curve data, which
/// a binary store held.
class XMLCurve : public UnitState<TransformState<ObjectState<GMKCurve>>>
{
public:
    /// The kernel form.
    explicit XMLCurve(XMLProducerImpl* producer);
    /// The store form: reads the payload of a curve record at the file's position, which afterwards stands behind it.
    /// The file is not kept.
    XMLCurve(XMLProducerImpl* producer, std::FILE* store, std::uint32_t kind, bool swapBytes);
    /// The same through a cursor.
    XMLCurve(XMLProducerImpl* producer, StoreCursor& store, std::uint32_t kind);
    ~XMLCurve() override;

    double AngularTolerance() const override { return m_angularTolerance; }
    double LinearTolerance() const override { return m_linearTolerance; }
    double ParamTolerance() const override { return m_paramTolerance; }
    bool IsVisible() const override { return m_visible; }
    bool IsNetVisible() const override { return m_netVisible; }
    IdSet Styles() const override { return m_styles; }
    IdSet NetStyles() const override { return m_netStyles; }
    /// Kept: a curve of the kernel form counts one entry, which is null.
    unsigned long long CurveDataCount() const override;
    ICurveData* CurveDataAt(unsigned long long index) const override;
    virtual void SetTransform(Matrix3d const& transform) { KeepTransform(transform); }

    /// Fills the object from an "ICurve" element; false for a null node. Kernel curves are looked up in the map.
    [[nodiscard]] bool ReadFromXML(xercesc::DOMNode* node, CurveEntities const& curveEntities);

private:
    void ReadCurveData() const;
    void ReadAttributes(xercesc::DOMNode const* node);

    XMLProducerImpl* m_producer;
    /// Filled by the constructor of the store form, or with a null entry when it is first asked for.
    mutable std::vector<std::unique_ptr<ICurveData>> m_curveData;
    double m_angularTolerance = -1.0;
    double m_linearTolerance = -1.0;
    double m_paramTolerance = -1.0;
    bool m_visible = true;
    bool m_netVisible = true;
    IdSet m_styles;
    IdSet m_netStyles;
};

}  // namespace KVR
