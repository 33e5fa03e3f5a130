#pragma once

#include <xercesc/util/XercesDefs.hpp>

#include "framework/api/IInstance.h"
#include "framework/api/Matrix3d.h"
#include "framework/xml_util/ObjectState.h"
#include "readers/UnitState.h"

namespace KVR
{

class IComponent;
class IFile;
class IProperty;
class XMLProducerImpl;

/// A component or file placed in an assembly. ReadInstance makes it when its target is known.
class XMLInstance : public UnitState<ObjectState<IInstance>>
{
public:
    XMLInstance(UTF8String id, UTF8String label, Matrix3d const& transform, ChangeKeyText changeKey,
                IComponent const* target, XMLProducerImpl* producer);
    XMLInstance(UTF8String id, UTF8String label, Matrix3d const& transform, ChangeKeyText changeKey,
                IFile const* target, XMLProducerImpl* producer);
    ~XMLInstance() override;

    /// The matrix also when it is the identity: never null.
    Matrix3d const* Transform() const override { return &m_transform; }
    InstanceChildId TargetId() const override { return m_targetId; }
    bool IsVisible() const override { return m_visible; }
    bool IsNetVisible() const override { return m_netVisible; }
    IdSet Styles() const override { return m_styles; }
    IdSet NetStyles() const override { return m_netStyles; }
    void SetLengthUnit(UnitTypeEnum unit) override { m_units.length = unit; }
    void SetDisplayAngleUnit(UnitTypeEnum unit) override { m_units.displayAngle = unit; }
    void SetDisplayLengthUnit(UnitTypeEnum unit) override { m_units.displayLength = unit; }

    void SetVisible(bool visible) noexcept { m_visible = visible; }
    void SetNetVisible(bool visible) noexcept { m_netVisible = visible; }
    void SetStyles(IdSet styles) noexcept { m_styles = std::move(styles); }
    void SetNetStyles(IdSet styles) noexcept { m_netStyles = std::move(styles); }

    /// Lists the property's id, again when it is listed already, and hands the property to the universe's database,
    /// which shares it; null has no effect.
    void AppendProperty(IProperty const* property);

private:
    InstanceChildId m_targetId;
    Matrix3d m_transform;
    bool m_visible = true;
    bool m_netVisible = true;
    IdSet m_styles;
    IdSet m_netStyles;
    XMLProducerImpl* m_producer;
};

}  // namespace KVR
