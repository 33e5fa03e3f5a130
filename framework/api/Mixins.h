#pragma once

#include "framework/api/Enums.h"
#include "framework/api/Export.h"
#include "framework/api/IdSet.h"

namespace KVR
{

class DataIdToPersistentIdMap;
class Matrix3d;
class SubEntityToStylesMap;

/// An object that has a place.
class KVR_API ITransformable
{
public:
    /// The transform, owned by the object; null for the identity.
    virtual Matrix3d const* Transform() const = 0;
    virtual ~ITransformable();
};

/// An object that states its units. Every answer is "not specified" unless a class says otherwise. In a scene,
/// components, instances, curves, sketches and sets report all three; points, clouds and meshes no angle; work features
/// the lengths alone; bodies the two of showing; files that of showing lengths.
class KVR_API IUnit
{
public:
    /// The unit of the lengths that the object answers; kUnitType_Unknown where it states none but answers all the
    /// same.
    virtual IsValueSpecifiedEnum LengthUnit(UnitTypeEnum& unit) const;
    /// The unit in which to show angles.
    virtual IsValueSpecifiedEnum DisplayAngleUnit(UnitTypeEnum& unit) const;
    /// The unit in which to show lengths.
    virtual IsValueSpecifiedEnum DisplayLengthUnit(UnitTypeEnum& unit) const;
    virtual ~IUnit();
};

/// An object that is shown or hidden.
class KVR_API IVisible
{
public:
    /// Whether the object itself is shown; what stands above it is not asked. When the scene does not say, instances,
    /// bodies, meshes, sketches and feature overrides are hidden, and all else is shown.
    virtual bool IsVisible() const = 0;
    virtual ~IVisible();
};

/// An object whose faces and edges have styles of their own.
class KVR_API ISubEntityStyles
{
public:
    /// The styles by data id, owned by the object; null here.
    virtual SubEntityToStylesMap* StylesMap() const;
    virtual ~ISubEntityStyles();
};

/// An object whose faces and edges have persistent ids.
class KVR_API ISubObjectPersistentIds
{
public:
    /// The persistent ids by data id, owned by the object; null here.
    virtual DataIdToPersistentIdMap* PersistentIDsMap() const;
    virtual ~ISubObjectPersistentIds();
};

/// An object under which shared objects are declared: their ids, by kind, in document order without repeats.
class KVR_API IAttributeSets
{
public:
    /// The ids of the styles that are declared here; empty when there are none.
    virtual IdSet StyleSet() const = 0;
    /// The ids of the textures that are declared here; empty when there are none.
    virtual IdSet TextureSet() const = 0;
    /// The ids of the layers that are declared here; empty when there are none.
    virtual IdSet LayerSet() const = 0;
    /// The ids of the groups that are declared here; empty when there are none.
    virtual IdSet GroupSet() const = 0;
    /// The ids of the levels of detail that are declared here; one that another owner declared before is missing.
    virtual IdSet LodSet() const = 0;
    /// The ids of the cameras that are declared here; empty when there are none.
    virtual IdSet CameraSet() const = 0;
    /// The ids of the views that are declared here; empty when there are none.
    virtual IdSet ViewSet() const = 0;
    virtual ~IAttributeSets();
};

}  // namespace KVR
