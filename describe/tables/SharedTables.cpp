#include "describe/Rows.h"
#include "framework/api/DataIdToPersistentIdMap.h"
#include "framework/api/ExtensionDataContent.h"
#include "framework/api/IComponent.h"
#include "framework/api/IGeometry.h"
#include "framework/api/IProperty.h"
#include "framework/api/PropertyDatabase.h"
#include "framework/api/SubEntityToStylesMap.h"

// The tables of the bases that several interfaces share.

namespace KVR
{

namespace
{

IsValueSpecifiedEnum ChangeKey(IObject const& object, UTF8String& key)
{
    return object.ChangeKey(kSnapshotVersion_Current, key);
}

void TellProperty(UTF8String const& id, Telling const& telling)
{
    IProperty const* property = nullptr;
    auto const answer = Ask([&] { return telling.properties->PropertyAt(id, property); }, [&] { telling.OnThrow(); });
    Tell(telling, answer == kIsValueSpecified_Yes ? property : nullptr);
}

// What the property database answers for each id.
void TellProperties(void const* object, Telling const& telling)
{
    auto const& of = *static_cast<IObject const*>(object);
    auto const ids = Ask([&] { return of.PropertyIds(); }, [&] { telling.OnThrow(); });
    telling.to.BeginList(AnswerVisitor::Layout::Lines);
    for (unsigned long long i = 0; ids && i < ids->Size(); ++i)
    {
        if (telling.properties)
            TellProperty(ids->At(i), telling);
        else
            telling.to.Null();
    }
    telling.to.EndList();
}

// The extension data of the type ids that are asked for, and that the object has.
void TellExtensionData(void const* object, Telling const& telling)
{
    auto const& of = *static_cast<IObject const*>(object);
    telling.to.BeginList(AnswerVisitor::Layout::Lines);
    for (std::string const& typeId : telling.extensionTypeIds)
    {
        ExtensionDataContent content;
        auto const answer =
            Ask([&] { return of.ExtensionDataByTypeId(UTF8String(typeId), content); }, [&] { telling.OnThrow(); });
        if (answer == kIsValueSpecified_Yes)
            Tell(telling, content);
    }
    telling.to.EndList();
}

IsValueSpecifiedEnum ExtensionDataChangeKey(IObject const& object, UTF8String& key)
{
    return object.ExtensionDataChangeKeyByTypeId("type", kSnapshotVersion_Current, key);
}

constexpr AnswerType kProperties = ListType(kAnswerType<IProperty*>);
constexpr AnswerType kExtensionData = ListType(kAnswerType<ExtensionDataContent>);

constexpr Row kObjectRows[] = {
    Value<&IObject::Id>("Id"),
    Value<&IObject::Label>("Label"),
    Value<&IObject::IsThreadSafe>("IsThreadSafe"),
    Value<&ChangeKey, &IObject::ChangeKey>("ChangeKey"),
    Value<&IObject::VersionPersistentId>("VersionPersistentId"),
    Value<&IObject::PropertyIds>("PropertyIds"),
    Told<&TellProperties, &PropertyDatabase::PropertyAt>("Properties", kProperties),
    Told<&TellExtensionData, &IObject::ExtensionDataByTypeId>("ExtensionData", kExtensionData),
    Value<&ExtensionDataChangeKey, &IObject::ExtensionDataChangeKeyByTypeId>("ExtensionDataChangeKey").NotInDump(),
};

constexpr Row kUnitRows[] = {
    Value<&IUnit::LengthUnit>("LengthUnit"),
    Value<&IUnit::DisplayAngleUnit>("DisplayAngleUnit"),
    Value<&IUnit::DisplayLengthUnit>("DisplayLengthUnit"),
};

constexpr Row kVisibleRows[] = {
    Value<&IVisible::IsVisible>("IsVisible"),
};

constexpr Row kTransformableRows[] = {
    Value<&ITransformable::Transform>("Transform"),
};

constexpr Row kAttributeSetsRows[] = {
    Value<&IAttributeSets::StyleSet>("StyleSet").RefersTo(Refers::Set),
    Value<&IAttributeSets::TextureSet>("TextureSet").RefersTo(Refers::Set),
    Value<&IAttributeSets::LayerSet>("LayerSet").RefersTo(Refers::Set),
    Value<&IAttributeSets::GroupSet>("GroupSet").RefersTo(Refers::Set),
    Value<&IAttributeSets::LodSet>("LodSet").RefersTo(Refers::Set),
    Value<&IAttributeSets::CameraSet>("CameraSet").RefersTo(Refers::Set),
    Value<&IAttributeSets::ViewSet>("ViewSet").RefersTo(Refers::Set),
};

constexpr Row kSubEntityStylesRows[] = {
    Value<&ISubEntityStyles::StylesMap>("StylesMap").RefersTo(Refers::SetOfEach),
};

// What the map answers for each of its own data ids.
void TellPersistentIdsByDataId(void const* object, Telling const& telling)
{
    DataIdToPersistentIdMap const* const map = static_cast<ISubObjectPersistentIds const*>(object)->PersistentIDsMap();
    telling.to.BeginList(AnswerVisitor::Layout::Lines);
    for (unsigned long long i = 0; map && i < map->Size(); ++i)
    {
        UTF8String id;
        if (map->PersistentId(map->DataIdAt(i), id) == kIsValueSpecified_Yes)
            Tell(telling, id);
        else
            telling.to.Null();
    }
    telling.to.EndList();
}

constexpr AnswerType kTextsOrNulls = ListType(kAnswerTypeOrNull<UTF8String>);

constexpr Row kSubObjectPersistentIdsRows[] = {
    Value<&ISubObjectPersistentIds::PersistentIDsMap, &DataIdToPersistentIdMap::Size,
          &DataIdToPersistentIdMap::DataIdAt, &DataIdToPersistentIdMap::PersistentIdAt>("PersistentIDsMap"),
    Told<&TellPersistentIdsByDataId, &DataIdToPersistentIdMap::PersistentId>("PersistentIDsByDataId", kTextsOrNulls)
        .NotInDump(),
};

constexpr Row kGeometryRows[] = {
    Inherits<IGeometry, IObject>(),
    Inherits<IGeometry, ITransformable>(),
    Inherits<IGeometry, IUnit>(),
    Inherits<IGeometry, IVisible>(),
    Value<&IGeometry::AngularTolerance>("AngularTolerance"),
    Value<&IGeometry::LinearTolerance>("LinearTolerance"),
    Value<&IGeometry::ParamTolerance>("ParamTolerance"),
    Value<&IGeometry::IsNetVisible>("IsNetVisible"),
    Value<&IGeometry::Styles>("Styles").RefersTo(Refers::Set),
    Value<&IGeometry::NetStyles>("NetStyles").RefersTo(Refers::Set),
};

constexpr Row kComponentRows[] = {
    Inherits<IComponent, IObject>(),
    Inherits<IComponent, IAttributeSets>(),
    Inherits<IComponent, IUnit>(),
    Value<&IComponent::FileProperties>("FileProperties"),
    Value<&IComponent::Styles>("Styles").RefersTo(Refers::Set),
    Value<&IComponent::IsSingleUnderRoot>("IsSingleUnderRoot"),
};

constexpr Row kExtensionDataRows[] = {
    Value<&ExtensionDataContent::TypeId>("TypeId"),
    Value<&ExtensionDataContent::Data>("Data"),
    Value<&ExtensionDataContent::ObjectPath>("ObjectPath"),
    Value<&ExtensionDataContent::ObjectPathType>("ObjectPathType"),
    Value<&ExtensionDataContent::LengthUnit>("LengthUnit"),
    Value<&ExtensionDataContent::Transform>("Transform"),
};

}  // namespace

Interface const TableOf<IObject>::kTable = {"IObject", kObjectRows};
Interface const TableOf<IUnit>::kTable = {"IUnit", kUnitRows};
Interface const TableOf<IVisible>::kTable = {"IVisible", kVisibleRows};
Interface const TableOf<ITransformable>::kTable = {"ITransformable", kTransformableRows};
Interface const TableOf<IAttributeSets>::kTable = {"IAttributeSets", kAttributeSetsRows};
Interface const TableOf<ISubEntityStyles>::kTable = {"ISubEntityStyles", kSubEntityStylesRows};
Interface const TableOf<ISubObjectPersistentIds>::kTable = {"ISubObjectPersistentIds", kSubObjectPersistentIdsRows};
Interface const TableOf<IGeometry>::kTable = {"IGeometry", kGeometryRows};
Interface const TableOf<IComponent>::kTable = {"IComponent", kComponentRows};
Interface const TableOf<ExtensionDataContent>::kTable = {"ExtensionDataContent", kExtensionDataRows};

}  // namespace KVR
