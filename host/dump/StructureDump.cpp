#include "host/dump/StructureDump.h"

#include "framework/api/IAssembly.h"
#include "framework/api/IAssemblyFeatureOverride.h"
#include "framework/api/IFile.h"
#include "framework/api/IInstance.h"
#include "framework/api/IPart.h"
#include "framework/api/Matrix3d.h"
#include "framework/api/OccurrencePathCollection.h"
#include "framework/api/Time.h"
#include "host/dump/DumpContext.h"
#include "host/dump/FilePropertiesDump.h"
#include "host/dump/Members.h"
#include "host/dump/SharedDump.h"

namespace KVR
{

namespace
{

// An entry of a cross-level list: what the getter of path and value answers, or null when it throws.
template <class Value, class Entry>
void DumpCrossLevel(DumpContext const& context, std::string_view valueName, Entry entry)
{
    IdSet path;
    Value value{};
    if (!Members<IAssembly>::Asked([&] { entry(path, value); }))
        return context.json.Null();
    context.json.BeginObject();
    context.json.Key("Path");
    WriteValue(context.json, path);
    context.json.Key(valueName);
    WriteValue(context.json, value);
    context.json.EndObject();
}

void DumpRefFile(DumpContext const& context, IFile const& file, unsigned long long index)
{
    UTF8String id;
    UTF16String path;
    if (!Members<IFile>::Asked([&] { return file.RefFileAt(index, id, path); }))
        return context.json.Null();
    context.json.BeginObject();
    context.json.Key("Id");
    WriteValue(context.json, id);
    context.json.Key("Path");
    WriteValue(context.json, path);
    context.json.EndObject();
}

void DumpComponent(DumpContext const& context, std::string_view className, IComponent const& component)
{
    DumpObject(context, className, component);
    DumpAttributeSets(context, component);
    DumpUnits(context, component);
    Members(context.json, component)
        .Pointer("FileProperties", &IComponent::FileProperties,
                 [&](FileProperties const& properties) { DumpFileProperties(context, properties); })
        .Value("Styles", &IComponent::Styles)
        .Value("IsSingleUnderRoot", &IComponent::IsSingleUnderRoot);
}

}  // namespace

void DumpFile(DumpContext const& context, IFile const& file)
{
    DumpObject(context, "IFile", file);
    DumpAttributeSets(context, file);
    DumpUnits(context, file);
    Members(context.json, file)
        .Pointer("FileProperties", &IFile::FileProperties,
                 [&](FileProperties const& properties) { DumpFileProperties(context, properties); })
        .Items("Children", &IFile::ChildCount, &IFile::ChildAt)
        .Value("IsRoot", &IFile::IsRoot)
        .Optional("FileFullPath", &IFile::FileFullPath)
        .Optional("LastModificationTime", &IFile::LastModificationTime)
        .List("RefFiles", &IFile::RefFileCount, [&](unsigned long long i) { DumpRefFile(context, file, i); });
}

void DumpAssembly(DumpContext const& context, IAssembly const& assembly)
{
    DumpComponent(context, "IAssembly", assembly);
    Members(context.json, assembly)
        .Items("Children", &IComponent::ChildCount, &IAssembly::ChildAt)
        .List("CrossLevelVisibilities", &IAssembly::CrossLevelVisibilityCount,
              [&](unsigned long long i)
              {
                  DumpCrossLevel<bool>(context, "Visible",
                                       [&](IdSet& path, bool& visible)
                                       { assembly.CrossLevelVisibilityAt(i, path, visible); });
              })
        .List("CrossLevelStyles", &IAssembly::CrossLevelStyleCount,
              [&](unsigned long long i)
              {
                  DumpCrossLevel<IdSet>(context, "Styles",
                                        [&](IdSet& path, IdSet& styles)
                                        { assembly.CrossLevelStyleAt(i, path, styles); });
              })
        .List("CrossLevelTransforms", &IAssembly::CrossLevelTransformCount,
              [&](unsigned long long i)
              {
                  DumpCrossLevel<Matrix3d>(context, "Transform",
                                           [&](IdSet& path, Matrix3d& transform)
                                           { assembly.CrossLevelTransformAt(i, path, transform); });
              });
}

void DumpPart(DumpContext const& context, IPart const& part)
{
    DumpComponent(context, "IPart", part);
    Members(context.json, part).Items("Children", &IComponent::ChildCount, &IPart::ChildAt);
}

void DumpInstance(DumpContext const& context, IInstance const& instance)
{
    DumpObject(context, "IInstance", instance);
    DumpTransform(context, instance);
    DumpUnits(context, instance);
    DumpVisibility(context, instance);
    Members(context.json, instance)
        .Value("TargetId", &IInstance::TargetId)
        .Value("IsNetVisible", &IInstance::IsNetVisible)
        .Value("Styles", &IInstance::Styles)
        .Value("NetStyles", &IInstance::NetStyles);
}

void DumpAssemblyFeatureOverride(DumpContext const& context, IAssemblyFeatureOverride const& featureOverride)
{
    DumpObject(context, "IAssemblyFeatureOverride", featureOverride);
    DumpVisibility(context, featureOverride);
    Members(context.json, featureOverride)
        .Items("Children", &IAssemblyFeatureOverride::ChildCount, &IAssemblyFeatureOverride::ChildAt);
    OccurrencePathCollection paths;
    context.json.Key("BaseOccPaths");
    if (!Members<IAssemblyFeatureOverride>::Asked([&] { featureOverride.BaseOccPaths(paths); }))
        return context.json.Null();
    context.json.BeginList();
    for (unsigned long long i = 0; i < paths.Size(); ++i)
        WriteValue(context.json, paths.At(i));
    context.json.EndList();
}

}  // namespace KVR
