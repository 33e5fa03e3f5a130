#pragma once

#include <memory>

#include "framework/api/DataIdToPersistentIdMap.h"
#include "framework/api/IBrep.h"
#include "framework/api/IdSet.h"
#include "framework/api/Matrix3d.h"
#include "framework/api/SubEntityToStylesMap.h"
#include "framework/gmk_interface/Export.h"

namespace KVR
{

/// A boundary representation whose body is the kernel's. What a setter was given its getter answers; before that,
/// tolerances are -1.0, units are not specified, and the object is hidden.
class KVR_GMK_INTERFACE_API GMKBrep : public IBrep
{
public:
    ~GMKBrep() override;

    double AngularTolerance() const override { return m_angularTolerance; }
    double LinearTolerance() const override { return m_linearTolerance; }
    double ParamTolerance() const override { return m_paramTolerance; }
    bool IsNetVisible() const override { return m_netVisible; }
    IdSet Styles() const override { return m_styles; }
    IdSet NetStyles() const override { return m_netStyles; }
    /// Null: the body is the kernel's.
    IBodyData* BodyDI() const override { return nullptr; }
    ProducerGeometryTypeEnum SrcGeomType() const override { return m_srcGeomType; }
    /// Told by the shapes that the body is made of; unknown without a body.
    BrepTypeEnum BrepType_ex() const override;
    BODY* Body() const override { return m_body; }
    /// Sets what kind of geometry it was at its source; the body is not compared with it.
    virtual void SetSrcGeomType(ProducerGeometryTypeEnum type) { m_srcGeomType = type; }
    /// Sets the styles of each face and edge in the map; one that was set before is replaced.
    virtual void AppendStylesToMap(SubEntityToStylesMap const& styles);
    /// Adds the ids of the map; one that is there already stays.
    virtual void AppendPersistentIDsToMap(EditableDataIdToPersistentIdMap const& ids);
    /// Takes the styles of a face or edge out of the map; an unknown data id has no effect.
    virtual void RemoveSubEntityStyles(UTF8String const& dataId) { m_stylesMap.Remove(dataId); }
    /// Takes the persistent id of a face or edge out of the map; an unknown data id has no effect.
    virtual void RemoveSubEntityPersistentIDs(UTF8String const& dataId) { m_persistentIds.Remove(dataId); }
    /// Takes the styles of all faces and edges out of the map.
    virtual void RemoveAllSubEntityStyles() { m_stylesMap.Clear(); }
    /// Takes all persistent ids out of the map.
    virtual void RemoveAllSubEntityPersistentIDs() { m_persistentIds.Clear(); }
    /// Replaces the ids of the object's styles by those that are moved in.
    virtual void SetStyles(IdSet&& styles) { m_styles = std::move(styles); }
    /// Replaces the ids of the object's styles by a copy.
    virtual void SetStyles(IdSet const& styles) { m_styles = styles; }
    /// Replaces the ids of the resolved styles by those that are moved in.
    virtual void SetNetStyles(IdSet&& styles) { m_netStyles = std::move(styles); }
    /// Replaces the ids of the resolved styles by a copy.
    virtual void SetNetStyles(IdSet const& styles) { m_netStyles = styles; }
    /// Sets what Transform answers, from then on a copy of the matrix, or null for the identity. Former answers end.
    virtual void SetTransform(Matrix3d&& transform);
    /// The same for a matrix that stays the caller's.
    virtual void SetTransform(Matrix3d const& transform);
    /// Shows or hides the object.
    virtual void SetVisible(bool visible) { m_visible = visible; }
    /// Sets the unit of the body's lengths; nothing is converted. A scene's reader leaves it not specified.
    virtual void SetLengthUnit(UnitTypeEnum unit) { m_lengthUnit = {unit, true}; }
    /// Sets the unit in which to show angles.
    virtual void SetDisplayAngleUnit(UnitTypeEnum unit) { m_displayAngleUnit = {unit, true}; }
    /// Sets the unit in which to show lengths.
    virtual void SetDisplayLengthUnit(UnitTypeEnum unit) { m_displayLengthUnit = {unit, true}; }
    /// Sets the angle below which two directions are one; nothing is checked.
    virtual void SetAngularTolerance(double tolerance) { m_angularTolerance = tolerance; }
    /// Sets the distance below which two points are one, in the body's length unit; nothing is checked.
    virtual void SetLinearTolerance(double tolerance) { m_linearTolerance = tolerance; }
    /// Sets the difference below which two parameters are one; nothing is checked.
    virtual void SetParamTolerance(double tolerance) { m_paramTolerance = tolerance; }

    Matrix3d const* Transform() const override { return m_transform.get(); }
    IsValueSpecifiedEnum LengthUnit(UnitTypeEnum& unit) const override { return m_lengthUnit.Answer(unit); }
    IsValueSpecifiedEnum DisplayAngleUnit(UnitTypeEnum& unit) const override { return m_displayAngleUnit.Answer(unit); }
    IsValueSpecifiedEnum DisplayLengthUnit(UnitTypeEnum& unit) const override
    {
        return m_displayLengthUnit.Answer(unit);
    }
    bool IsVisible() const override { return m_visible; }
    /// Owned by the object; a host may edit it.
    SubEntityToStylesMap* StylesMap() const override { return &m_stylesMap; }
    DataIdToPersistentIdMap* PersistentIDsMap() const override { return &m_persistentIds; }

    /// Keeps the id that stays the object's over versions, beside the one that VersionPersistentId answers.
    void SetVersionPersistentId(UTF8String const& id) { m_versionPersistentId = id; }
    /// The id that was kept so; empty until then. Owned by the object.
    UTF8String const& VersionPersistentIdText() const noexcept { return m_versionPersistentId; }
    /// Sets the resolved visibility.
    void SetNetVisibility(bool visible) { m_netVisible = visible; }

protected:
    GMKBrep();

    /// The object owns the body from here on and ends it with itself; null for none.
    void TakeBody(BODY* body) noexcept { m_body = body; }
    /// Gives the body away, out of the history stream that it is in.
    BODY* GiveBody() noexcept;

private:
    struct Unit
    {
        UnitTypeEnum unit = kUnitType_Unknown;
        bool isSet = false;

        IsValueSpecifiedEnum Answer(UnitTypeEnum& answer) const
        {
            if (isSet)
                answer = unit;
            return isSet ? kIsValueSpecified_Yes : kIsValueSpecified_No;
        }
    };

    BODY* m_body = nullptr;
    ProducerGeometryTypeEnum m_srcGeomType = kProducerGeometryType_BrepSolid;
    bool m_visible = false;
    bool m_netVisible = false;
    Unit m_lengthUnit;
    Unit m_displayAngleUnit;
    Unit m_displayLengthUnit;
    double m_angularTolerance = -1.0;
    double m_linearTolerance = -1.0;
    double m_paramTolerance = -1.0;
    IdSet m_styles;
    IdSet m_netStyles;
    UTF8String m_versionPersistentId;
    std::unique_ptr<Matrix3d> m_transform;
    mutable SubEntityToStylesMap m_stylesMap;
    mutable EditableDataIdToPersistentIdMap m_persistentIds;
};

}  // namespace KVR
