#include "tests/support/SceneWalk.h"

#include <stdexcept>

#include "tests/support/SceneWalker.h"

#include "tests/support/AppearanceQuestions.h"
#include "tests/support/OrganisationQuestions.h"

namespace KVR::Test
{

void SceneWalker::Write(CustomProperty const& property)
{
    m_text << UTF8String(property.Name()).View() << " = ";
    UTF16String text;
    int integer = 0;
    double number = 0.0;
    bool flag = false;
    struct tm time
    {
    };
    if (property.Value(text) == kIsValueSpecified_Yes)
        Write(text);
    if (property.Value(integer) == kIsValueSpecified_Yes)
        Write(integer);
    if (property.Value(number) == kIsValueSpecified_Yes)
        Write(number);
    if (property.Value(flag) == kIsValueSpecified_Yes)
        Write(flag);
    if (property.Value(time) == kIsValueSpecified_Yes)
        Write(time);
}

void SceneWalker::AskUniverse()
{
    IUniverse const* const universe = m_producer.LoadUniverse();
    Tell("LoadUniverse", universe != nullptr);
    if (!universe)
        return;
    Ask("DefaultCurveColor", *universe, &IUniverse::DefaultCurveColor);
    Ask("DefaultSurfaceColor", *universe, &IUniverse::DefaultSurfaceColor);
    Ask("ViewingDataOf", *universe, &IUniverse::ViewingDataOf);
    Tell("PropertyDatabaseOf", universe->PropertyDatabaseOf() != nullptr);
    for (unsigned long long i = 0; i < universe->CustomDataCount(); ++i)
    {
        UTF8String key;
        Variant value;
        bool const isSpecified = universe->CustomDataAt(i, key, value) == kIsValueSpecified_Yes;
        Tell("CustomDataAt", key);
        if (isSpecified)
            Tell("is", value);
    }
}

void SceneWalker::AskAll()
{
    for (; !m_waiting.empty(); m_waiting.pop_front())
    {
        std::string const& id = m_waiting.front();
        IObject* const object = m_producer.Load(UTF8String(std::string_view(id)));
        if (!object)
        {
            ++m_answers.absent;
            Tell("absent", id);
            continue;
        }
        AskObject(*object);
        if (auto const* const file = dynamic_cast<IFile const*>(object))
            AskFile(*file);
        else if (auto const* const assembly = dynamic_cast<IAssembly const*>(object))
            AskAssembly(*assembly);
        else if (auto const* const part = dynamic_cast<IPart const*>(object))
        {
            ++m_answers.parts;
            AskComponent(*part);
            AskChildren(*part);
        }
        else if (auto const* const instance = dynamic_cast<IInstance const*>(object))
            AskInstance(*instance);
        else if (auto const* const style = dynamic_cast<IRenderStyle const*>(object))
            AskStyle(*this, *style);
        else if (auto const* const texture = dynamic_cast<IMaterialTexture const*>(object))
            AskTexture(*this, *texture);
        else if (auto const* const geometry = dynamic_cast<IGeometry const*>(object))
            AskGeometry(*geometry);
        else if (auto const* const callout = dynamic_cast<IAnnotationCallout const*>(object))
            AskCallout(*callout);
        else if (auto const* const element = dynamic_cast<IAnnotationCalloutElement const*>(object))
        {
            ++m_answers.notes;
            Tell("Styles", element->Styles());
            AskChildren(*element);
        }
        else if (!AskOrganisation(*this, *object))
            throw std::logic_error("an object of no known kind: " + id);
    }
}

void SceneWalker::AskObject(IObject& object)
{
    Tell("Id", object.Id());
    Tell("Label", object.Label());
    Tell("IsThreadSafe", object.IsThreadSafe());
    Tell("PropertyIds", object.PropertyIds());
    Ask("VersionPersistentId", object, &IObject::VersionPersistentId);
    UTF8String changeKey;
    if (object.ChangeKey(kSnapshotVersion_Current, changeKey) == kIsValueSpecified_Yes)
        Tell("ChangeKey", changeKey);
    ExtensionDataContent content;
    if (object.ExtensionDataByTypeId("type", content) == kIsValueSpecified_Yes)
    {
        Tell("Data", content.Data());
        Tell("ObjectPath", content.ObjectPath());
        Tell("ObjectPathType", static_cast<int>(content.ObjectPathType()));
        Ask("LengthUnit", content, &ExtensionDataContent::LengthUnit);
        Ask("Transform", content, &ExtensionDataContent::Transform);
    }
    ObjectVisitor visitor;
    object.AcceptVisitor(&visitor);
}

void SceneWalker::AskUnits(IUnit const& object)
{
    Ask("LengthUnit", object, &IUnit::LengthUnit);
    Ask("DisplayAngleUnit", object, &IUnit::DisplayAngleUnit);
    Ask("DisplayLengthUnit", object, &IUnit::DisplayLengthUnit);
}

void SceneWalker::AskAttributeSets(IAttributeSets const& object)
{
    TellObjects("StyleSet", object.StyleSet());
    TellObjects("TextureSet", object.TextureSet());
    TellObjects("LayerSet", object.LayerSet());
    TellObjects("GroupSet", object.GroupSet());
    TellObjects("LodSet", object.LodSet());
    TellObjects("CameraSet", object.CameraSet());
    TellObjects("ViewSet", object.ViewSet());
}

void SceneWalker::TellObjects(char const* question, IdSet const& ids)
{
    Tell(question, ids);
    for (unsigned long long i = 0; i < ids.Size(); ++i)
        Visit(Text(ids[i]));
}

void SceneWalker::AskFileProperties(FileProperties const* properties)
{
    Tell("FileProperties", properties != nullptr);
    if (!properties)
        return;
    using Getter = IsValueSpecifiedEnum (FileProperties::*)(UTF16String&) const;
    for (Getter const getter :
         {&FileProperties::Title, &FileProperties::Author, &FileProperties::Organization, &FileProperties::Description,
          &FileProperties::SendingSystem, &FileProperties::PartNumber, &FileProperties::Revision,
          &FileProperties::Preprocessor, &FileProperties::Authorisation})
        Ask("text", *properties, getter);
    Ask("CreationDate", *properties, &FileProperties::CreationDate);
    Ask("MassUnit", *properties, &FileProperties::MassUnit);
    Ask("TimeUnit", *properties, &FileProperties::TimeUnit);
    Ask("ViewDataOf", *properties, &FileProperties::ViewDataOf);
    for (unsigned long long i = 0; i < properties->CustomPropertyCount(); ++i)
    {
        CustomProperty property;
        if (properties->CustomPropertyAt(i, property) == kIsValueSpecified_Yes)
            Tell("CustomPropertyAt", property);
    }
}

void SceneWalker::AskComponent(IComponent const& component)
{
    AskUnits(component);
    AskAttributeSets(component);
    AskFileProperties(component.FileProperties());
    Tell("Styles", component.Styles());
    Tell("IsSingleUnderRoot", component.IsSingleUnderRoot());
}

void SceneWalker::AskFile(IFile const& file)
{
    ++m_answers.files;
    AskUnits(file);
    AskAttributeSets(file);
    AskFileProperties(file.FileProperties());
    Tell("IsRoot", file.IsRoot());
    Ask("FileFullPath", file, &IFile::FileFullPath);
    Ask("LastModificationTime", file, &IFile::LastModificationTime);
    for (unsigned long long i = 0; i < file.RefFileCount(); ++i)
    {
        UTF8String id;
        UTF16String path;
        if (file.RefFileAt(i, id, path) == kIsValueSpecified_Yes)
        {
            Tell("RefFileAt", id);
            Tell("is", path);
        }
    }
    AskChildren(file);
}

void SceneWalker::AskAssembly(IAssembly const& assembly)
{
    ++m_answers.assemblies;
    AskComponent(assembly);
    for (unsigned long long i = 0; i < assembly.CrossLevelVisibilityCount(); ++i)
    {
        IdSet path;
        bool visible = false;
        assembly.CrossLevelVisibilityAt(i, path, visible);
        Tell("CrossLevelVisibilityAt", path);
        Tell("is", visible);
    }
    for (unsigned long long i = 0; i < assembly.CrossLevelStyleCount(); ++i)
    {
        IdSet path;
        IdSet styles;
        assembly.CrossLevelStyleAt(i, path, styles);
        Tell("CrossLevelStyleAt", path);
        Tell("is", styles);
    }
    for (unsigned long long i = 0; i < assembly.CrossLevelTransformCount(); ++i)
    {
        IdSet path;
        Matrix3d transform;
        assembly.CrossLevelTransformAt(i, path, transform);
        Tell("CrossLevelTransformAt", path);
        Tell("is", transform);
    }
    AskChildren(assembly);
}

void SceneWalker::AskInstance(IInstance const& instance)
{
    ++m_answers.instances;
    AskUnits(instance);
    Tell("IsVisible", instance.IsVisible());
    Tell("IsNetVisible", instance.IsNetVisible());
    Tell("Styles", instance.Styles());
    Tell("NetStyles", instance.NetStyles());
    if (instance.Transform())
        Tell("Transform", *instance.Transform());
    std::string const target = Text(instance.TargetId().Id());
    Tell("TargetId", target);
    Visit(target);
}

SceneAnswers WalkScene(XMLProducer& producer, std::vector<std::string> const& ids)
{
    SceneWalker walk(producer);
    try
    {
        std::string const root = Text(producer.RootObjectId().Id());
        walk.Tell("RootObjectId", root);
        walk.Visit(root);
    }
    catch (GeneralException const& exception)
    {
        walk.Tell("RootObjectId", exception.what());
    }
    bool hasStructure = false;
    producer.QueryFile()->HasAssemblyStructure(hasStructure);
    walk.Tell("HasAssemblyStructure", hasStructure);
    walk.AskUniverse();
    for (std::string const& id : ids)
        walk.Visit(id);
    walk.AskAll();
    return walk.Answers();
}

}  // namespace KVR::Test
