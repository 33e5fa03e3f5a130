#include "tests/support/SceneWalk.h"

#include <deque>
#include <iomanip>
#include <locale>
#include <sstream>
#include <stdexcept>
#include <unordered_set>

#include "tests/support/AppearanceQuestions.h"

namespace KVR::Test
{

namespace
{

class Walk
{
public:
    explicit Walk(XMLProducer& producer) : m_producer(producer) { m_text.imbue(std::locale::classic()); }

    void Visit(std::string const& id)
    {
        if (m_seen.insert(id).second)
            m_waiting.push_back(id);
    }

    void AskUniverse();
    void AskAll();
    SceneAnswers Answers()
    {
        m_answers.text = m_text.str();
        return std::move(m_answers);
    }

    template <class Value>
    void Tell(char const* question, Value const& value)
    {
        m_text << question << ": ";
        Write(value);
        m_text << '\n';
    }

    // A getter with one output.
    template <class Value, class Asked, class Interface>
    void Ask(char const* question, Asked const& asked, IsValueSpecifiedEnum (Interface::*getter)(Value&) const)
    {
        Value value{};
        if ((asked.*getter)(value) == kIsValueSpecified_Yes)
            Tell(question, value);
        else
            Tell(question, "not specified");
    }

private:
    void Write(bool value) { m_text << (value ? "true" : "false"); }
    void Write(unsigned long long value) { m_text << value; }
    void Write(int value) { m_text << value; }
    void Write(UnitTypeEnum value) { m_text << static_cast<int>(value); }
    void Write(double value) { m_text << std::setprecision(17) << value; }
    void Write(char const* value) { m_text << value; }
    void Write(std::string const& value) { m_text << value; }
    void Write(UTF8String const& value) { m_text << value.View(); }
    void Write(UTF16String const& value) { Write(UTF8String(value)); }
    void Write(struct tm const& time) { m_text << std::put_time(&time, "%Y-%m-%dT%H:%M:%S"); }
    void Write(Time const& time) { Write(time.Value()); }
    void Write(Vector const& vector) { m_text << vector[0] << ' ' << vector[1] << ' ' << vector[2]; }
    void Write(ViewingData const& data)
    {
        Write(data.UpVector());
        m_text << " / ";
        Write(data.FrontVector());
    }
    void Write(Color const& color)
    {
        m_text << color.Red() << ' ' << color.Green() << ' ' << color.Blue() << ' ' << color.Alpha();
    }
    void Write(IdSet const& ids)
    {
        for (unsigned long long i = 0; i < ids.Size(); ++i)
            m_text << '[' << ids[i].View() << ']';
    }
    void Write(Matrix3d const& matrix)
    {
        for (double const element : matrix.Elements())
            m_text << std::setprecision(17) << element << ' ';
    }
    void Write(Blob const& blob)
    {
        m_text << blob.Size() << " bytes ";
        m_text.write(static_cast<char const*>(blob.Data()), static_cast<std::streamsize>(blob.Size()));
    }
    void Write(Variant const& variant)
    {
        m_text << static_cast<int>(variant.Kind()) << ' ';
        if (variant.AStringValue())
            Write(*variant.AStringValue());
        if (variant.IdSetValue())
            Write(*variant.IdSetValue());
        if (variant.BlobValue())
            Write(*variant.BlobValue());
    }
    void Write(CustomProperty const& property);

    void AskObject(IObject& object);
    void AskUnits(IUnit const& object);
    void AskAttributeSets(IAttributeSets const& object);
    void TellObjects(char const* question, IdSet const& ids);
    void AskFileProperties(FileProperties const* properties);
    void AskComponent(IComponent const& component);
    void AskFile(IFile const& file);
    void AskAssembly(IAssembly const& assembly);
    void AskInstance(IInstance const& instance);
    template <class Owner>
    void AskChildren(Owner const& owner);

    XMLProducer& m_producer;
    SceneAnswers m_answers;
    std::ostringstream m_text;
    std::deque<std::string> m_waiting;
    std::unordered_set<std::string> m_seen;
};

void Walk::Write(CustomProperty const& property)
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

void Walk::AskUniverse()
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

void Walk::AskAll()
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
        else
            throw std::logic_error("an object of no known kind: " + id);
    }
}

void Walk::AskObject(IObject& object)
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

void Walk::AskUnits(IUnit const& object)
{
    Ask("LengthUnit", object, &IUnit::LengthUnit);
    Ask("DisplayAngleUnit", object, &IUnit::DisplayAngleUnit);
    Ask("DisplayLengthUnit", object, &IUnit::DisplayLengthUnit);
}

void Walk::AskAttributeSets(IAttributeSets const& object)
{
    TellObjects("StyleSet", object.StyleSet());
    TellObjects("TextureSet", object.TextureSet());
    Tell("LayerSet", object.LayerSet());
    Tell("GroupSet", object.GroupSet());
    Tell("LodSet", object.LodSet());
    Tell("CameraSet", object.CameraSet());
    Tell("ViewSet", object.ViewSet());
}

void Walk::TellObjects(char const* question, IdSet const& ids)
{
    Tell(question, ids);
    for (unsigned long long i = 0; i < ids.Size(); ++i)
        Visit(Text(ids[i]));
}

void Walk::AskFileProperties(FileProperties const* properties)
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

template <class Owner>
void Walk::AskChildren(Owner const& owner)
{
    for (unsigned long long i = 0; i < owner.ChildCount(); ++i)
    {
        std::string const id = Text(owner.ChildAt(i).Id());
        Tell("ChildAt", id);
        Visit(id);
    }
}

void Walk::AskComponent(IComponent const& component)
{
    AskUnits(component);
    AskAttributeSets(component);
    AskFileProperties(component.FileProperties());
    Tell("Styles", component.Styles());
    Tell("IsSingleUnderRoot", component.IsSingleUnderRoot());
}

void Walk::AskFile(IFile const& file)
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

void Walk::AskAssembly(IAssembly const& assembly)
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

void Walk::AskInstance(IInstance const& instance)
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

}  // namespace

SceneAnswers WalkScene(XMLProducer& producer, std::vector<std::string> const& ids)
{
    Walk walk(producer);
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
