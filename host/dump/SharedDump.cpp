#include "host/dump/SharedDump.h"

#include "framework/api/ExtensionDataContent.h"
#include "framework/api/IGeometry.h"
#include "framework/api/IProperty.h"
#include "framework/api/PropertyDatabase.h"
#include "framework/api/SubEntityToStylesMap.h"
#include "host/dump/DumpContext.h"
#include "host/dump/DumpOptions.h"
#include "host/dump/Members.h"

namespace KVR
{

namespace
{

void DumpChangeKey(DumpContext const& context, IObject const& object)
{
    UTF8String key;
    context.json.Key("ChangeKey");
    if (Ask([&] { return object.ChangeKey(kSnapshotVersion_Current, key); }) == kIsValueSpecified_Yes)
        WriteValue(context.json, key);
    else
        context.json.Null();
}

void DumpProperty(DumpContext const& context, UTF8String const& id)
{
    IProperty const* property = nullptr;
    auto const answer = Ask([&] { return context.properties->PropertyAt(id, property); });
    if (answer == kIsValueSpecified_Yes && property)
        WriteValue(context.json, *property);
    else
        context.json.Null();
}

void DumpProperties(DumpContext const& context, IObject const& object)
{
    auto const ids = Ask([&] { return object.PropertyIds(); });
    context.json.Key("PropertyIds");
    WriteValue(context.json, ids);
    context.json.Key("Properties");
    context.json.BeginList();
    for (unsigned long long i = 0; ids && i < ids->Size(); ++i)
    {
        if (context.properties)
            DumpProperty(context, ids->At(i));
        else
            context.json.Null();
    }
    context.json.EndList();
}

void DumpExtensionData(DumpContext const& context, IObject const& object)
{
    JsonWriter& json = context.json;
    json.Key("ExtensionData");
    json.BeginList();
    for (std::string const& typeId : context.options.extensionTypeIds)
    {
        ExtensionDataContent content;
        if (Ask([&] { return object.ExtensionDataByTypeId(UTF8String(typeId), content); }) != kIsValueSpecified_Yes)
            continue;
        json.BeginObject();
        Members(json, content)
            .Value("TypeId", &ExtensionDataContent::TypeId)
            .Value("Data", &ExtensionDataContent::Data)
            .Value("ObjectPath", &ExtensionDataContent::ObjectPath)
            .Value("ObjectPathType", &ExtensionDataContent::ObjectPathType)
            .Optional("LengthUnit", &ExtensionDataContent::LengthUnit)
            .Optional("Transform", &ExtensionDataContent::Transform);
        json.EndObject();
    }
    json.EndList();
}

}  // namespace

void DumpObject(DumpContext const& context, std::string_view className, IObject const& object)
{
    context.json.Key("Class");
    context.json.String(className);
    Members members(context.json, object);
    members.Value("Id", &IObject::Id).Value("Label", &IObject::Label).Value("IsThreadSafe", &IObject::IsThreadSafe);
    DumpChangeKey(context, object);
    members.Optional("VersionPersistentId", &IObject::VersionPersistentId);
    DumpProperties(context, object);
    DumpExtensionData(context, object);
}

void DumpUnits(DumpContext const& context, IUnit const& object)
{
    Members(context.json, object)
        .Optional("LengthUnit", &IUnit::LengthUnit)
        .Optional("DisplayAngleUnit", &IUnit::DisplayAngleUnit)
        .Optional("DisplayLengthUnit", &IUnit::DisplayLengthUnit);
}

void DumpVisibility(DumpContext const& context, IVisible const& object)
{
    Members(context.json, object).Value("IsVisible", &IVisible::IsVisible);
}

void DumpTransform(DumpContext const& context, ITransformable const& object)
{
    Members(context.json, object)
        .Pointer("Transform", &ITransformable::Transform,
                 [&](Matrix3d const& transform) { WriteValue(context.json, transform); });
}

void DumpAttributeSets(DumpContext const& context, IAttributeSets const& object)
{
    Members(context.json, object)
        .Value("StyleSet", &IAttributeSets::StyleSet)
        .Value("TextureSet", &IAttributeSets::TextureSet)
        .Value("LayerSet", &IAttributeSets::LayerSet)
        .Value("GroupSet", &IAttributeSets::GroupSet)
        .Value("LodSet", &IAttributeSets::LodSet)
        .Value("CameraSet", &IAttributeSets::CameraSet)
        .Value("ViewSet", &IAttributeSets::ViewSet);
}

void DumpStylesMap(DumpContext const& context, ISubEntityStyles const& object)
{
    Members(context.json, object)
        .Pointer("StylesMap", &ISubEntityStyles::StylesMap,
                 [&](SubEntityToStylesMap const& map)
                 {
                     context.json.BeginObject();
                     for (unsigned long long i = 0; i < map.Size(); ++i)
                     {
                         context.json.Key(map.DataIdAt(i).View());
                         WriteValue(context.json, map.StylesAt(i));
                     }
                     context.json.EndObject();
                 });
}

void DumpGeometry(DumpContext const& context, std::string_view className, IGeometry const& geometry)
{
    DumpObject(context, className, geometry);
    DumpTransform(context, geometry);
    DumpUnits(context, geometry);
    DumpVisibility(context, geometry);
    Members(context.json, geometry)
        .Value("AngularTolerance", &IGeometry::AngularTolerance)
        .Value("LinearTolerance", &IGeometry::LinearTolerance)
        .Value("ParamTolerance", &IGeometry::ParamTolerance)
        .Value("IsNetVisible", &IGeometry::IsNetVisible)
        .Value("Styles", &IGeometry::Styles)
        .Value("NetStyles", &IGeometry::NetStyles);
}

}  // namespace KVR
