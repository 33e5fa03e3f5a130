#include "exchange/certify/scene/SceneNotes.h"

#include <map>
#include <nlohmann/json.hpp>

#include "exchange/certify/FactTexts.h"
#include "scene/ExtensionTypes.h"

namespace KVR::Certification
{

namespace
{

// An object's, which is not the same as that of its type.
std::string TextOf(UTF16String const& text)
{
    return std::string(UTF8String(text).View());
}

std::string DataOf(IObject const& object, char const* typeId)
{
    ExtensionDataContent content;
    return object.ExtensionDataByTypeId(typeId, content) == kIsValueSpecified_Yes ? std::string(content.Data().View())
                                                                                  : std::string();
}

// The text of a property's or custom property's value; empty for a time.
template <class Property>
std::string ValueText(Property const& property)
{
    UTF16String text;
    double number = 0.0;
    int integer = 0;
    bool isTrue = false;
    if (property.Value(text) == kIsValueSpecified_Yes)
        return PropertyValueText(TextOf(text));
    if (property.Value(number) == kIsValueSpecified_Yes)
        return NumberText(number);
    if (property.Value(integer) == kIsValueSpecified_Yes)
        return NumberText(integer);
    if (property.Value(isTrue) == kIsValueSpecified_Yes)
        return isTrue ? "true" : "false";
    return {};
}

// Tolerances as the entities of ISO 10303 are called.
std::string TypeName(std::string const& type)
{
    static std::map<std::string, std::string> const names{{"circular run-out", "circular runout"},
                                                          {"total run-out", "total runout"},
                                                          {"circularity", "roundness"},
                                                          {"circularity or roundness", "roundness"},
                                                          {"profile of line", "line profile"},
                                                          {"profile of surface", "surface profile"}};
    auto const found = names.find(type);
    return found == names.end() ? type : found->second;
}

// What a callout is called, as the entities of a file would be.
struct NoteName
{
    std::string kind;
    /// Empty for what is no more than drawn.
    std::string note;
    std::string value;
};

NoteName NameOf(IAnnotationCallout const& callout, double unit)
{
    NoteName name;
    name.kind = DataOf(callout, kAnnotationKindTypeId);
    auto const details = nlohmann::json::parse(DataOf(callout, kAnnotationDetailsTypeId), nullptr, false);
    auto const text = [&](char const* key)
    {
        return details.is_object() && details.contains(key) && details[key].is_string()
                   ? details[key].get<std::string>()
                   : std::string();
    };
    std::string const type = TypeName(text("type"));
    if (name.kind.empty() || type == "label" || type == "presentation")
        return name;
    if (name.kind == "datum")
    {
        if (std::string const letter = text("letter"); !letter.empty())
            name.note = "datum " + letter;
        return name;
    }
    name.note = type.empty() ? name.kind : name.kind + ' ' + type;
    UnitTypeEnum stated = kUnitType_Unknown;
    if (callout.Text() && callout.Text()->LengthUnit(stated) == kIsValueSpecified_Yes && MetresOf(stated) > 0.0)
        unit = MetresOf(stated) * 1e3;
    char const* const key = name.kind == "tolerance" ? "magnitude" : "value";
    if (details.is_object() && details.contains(key) && details[key].is_number())
        name.value = name.note + ' ' + NumberText(details[key].get<double>() * (type == "angle" ? 1.0 : unit));
    return name;
}

std::string TextOf(IText const& text)
{
    std::string all;
    for (unsigned long long i = 0; i < text.LineCount(); ++i)
        for (unsigned long long k = 0; k < text.LineAt(i)->FragmentCount(); ++k)
            all += (k == 0 && i > 0 ? "\n" : "") + TextOf(text.LineAt(i)->FragmentAt(k)->Value());
    return PropertyValueText(all);
}

// What a member of a view is; empty for what files do not list.
std::string MemberName(IProducer& producer, IObject* member, std::set<std::string> const& roots)
{
    if (auto const* const callout = dynamic_cast<IAnnotationCallout const*>(member))
    {
        NoteName const name = NameOf(*callout, 1.0);
        std::string const label = TextOf(callout->Label());
        if (name.note.empty())
            return label.empty() ? std::string() : "drawing " + label;
        return name.value.empty() ? name.note : name.value;
    }
    if (auto const* const instance = dynamic_cast<IInstance const*>(member))
        member = producer.Load(instance->TargetId().Id());
    auto const* const component = dynamic_cast<IComponent const*>(member);
    // A view that shows all is one that names nothing.
    return component && roots.count(std::string(component->Id().View())) == 0
               ? "component " + TextOf(component->Label())
               : std::string();
}

}  // namespace

void AddSceneNote(ModelFacts& facts, IAnnotationCallout const& callout, double unit)
{
    NoteName const name = NameOf(callout, unit);
    // Each naming of a datum is a note.
    if (name.kind == "datum" && !name.note.empty())
        facts.tables[kTable_Notes][name.note].count = 1.0;
    else if (!name.note.empty())
        facts.Add(kTable_Notes, name.note);
    if (!name.value.empty())
        facts.Add(kTable_NoteValues, name.value);
    // That of a dimension or tolerance repeats what it is.
    if (std::string const text = callout.Text() && name.note.empty() ? TextOf(*callout.Text()) : std::string();
        !text.empty())
        facts.tables[kTable_NoteTexts][text].count = 1.0;
}

void AddSceneView(ModelFacts& facts, IProducer& producer, IView const& view, std::set<std::string> const& roots,
                  FactPlace const& upright)
{
    std::string const name = TextOf(view.Label());
    IdSet const cameras = view.CameraSet();
    for (unsigned long long i = 0; i < cameras.Size(); ++i)
        if (auto const* const camera = dynamic_cast<ICamera const*>(producer.Load(cameras.At(i))))
        {
            UnitTypeEnum stated = kUnitType_Unknown;
            double const metres = camera->LengthUnit(stated) == kIsValueSpecified_Yes ? MetresOf(stated) : 0.0;
            double const unit = metres > 0.0 ? metres * 1e3 : 1.0;
            auto const place = [&](Position const& p) {
                return upright.Of({p.X() * unit, p.Y() * unit, p.Z() * unit});
            };
            auto const direction = [&](auto const& v) { return upright.OfDirection({v[0], v[1], v[2]}); };
            AddView(facts, name, place(camera->CameraPosition()), direction(camera->CameraDirection()),
                    direction(camera->CameraUpDirection()));
            if (auto const* const section = dynamic_cast<ISectionCamera const*>(camera))
                for (unsigned long long k = 0; k < section->SectionPlaneCount(); ++k)
                {
                    Plane const plane = section->SectionPlaneAt(k);
                    AddCut(facts, name, place(plane.Origin()), direction(plane.Normal()));
                }
            break;
        }
    for (unsigned long long i = 0; i < view.ViewMemberCount(); ++i)
    {
        IdSet const path = view.OccurrencePathAt(i);
        std::string const member = path.IsEmpty() || !view.EntityVisibilityAt(i)
                                       ? std::string()
                                       : MemberName(producer, producer.Load(path.At(path.Size() - 1)), roots);
        if (!member.empty())
            facts.tables[kTable_ViewMembers][ModelFacts::Joined(name, member)].count = 1.0;
    }
}

std::set<std::string> ScenePropertiesOf(IProducer& producer, IComponent const& component)
{
    std::set<std::string> values;
    auto const add = [&](auto const& property)
    {
        if (std::string const value = ValueText(property); !value.empty())
            values.insert(StatedText(TextOf(property.Name()), value));
    };
    if (FileProperties const* const properties = component.FileProperties())
    {
        CustomProperty property;
        for (unsigned long long i = 0; i < properties->CustomPropertyCount(); ++i)
            if (properties->CustomPropertyAt(i, property) == kIsValueSpecified_Yes)
                add(property);
    }
    IUniverse const* const universe = producer.LoadUniverse();
    if (!universe)
        return values;
    IdSet const ids = component.PropertyIds();
    for (unsigned long long i = 0; i < ids.Size(); ++i)
    {
        IProperty const* property = nullptr;
        if (universe->PropertyDatabaseOf()->PropertyAt(ids.At(i), property) == kIsValueSpecified_Yes)
            add(*property);
    }
    return values;
}

}  // namespace KVR::Certification
