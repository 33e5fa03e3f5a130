#include "exchange/certify/scene/SceneNotes.h"

#include <map>
#include <nlohmann/json.hpp>

#include "exchange/certify/FactTexts.h"
#include "scene/ExtensionTypes.h"

namespace KVR::Certification
{

namespace
{

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
        return PropertyValueText(std::string(UTF8String(text).View()));
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

}  // namespace

void AddSceneNote(ModelFacts& facts, IAnnotationCallout const& callout, double unit)
{
    std::string const kind = DataOf(callout, kAnnotationKindTypeId);
    auto const details = nlohmann::json::parse(DataOf(callout, kAnnotationDetailsTypeId), nullptr, false);
    auto const text = [&](char const* key)
    {
        return details.is_object() && details.contains(key) && details[key].is_string()
                   ? details[key].get<std::string>()
                   : std::string();
    };
    std::string const type = TypeName(text("type"));
    if (kind.empty() || type == "label" || type == "presentation")
        return;
    if (kind == "datum")
    {
        // Each naming of a datum is a note.
        if (std::string const letter = text("letter"); !letter.empty())
            facts.tables[kTable_Notes]["datum " + letter].count = 1.0;
        return;
    }
    std::string const note = type.empty() ? kind : kind + ' ' + type;
    facts.Add(kTable_Notes, note);
    UnitTypeEnum stated = kUnitType_Unknown;
    if (callout.Text() && callout.Text()->LengthUnit(stated) == kIsValueSpecified_Yes && MetresOf(stated) > 0.0)
        unit = MetresOf(stated) * 1e3;
    char const* const key = kind == "tolerance" ? "magnitude" : "value";
    if (details.is_object() && details.contains(key) && details[key].is_number())
        facts.Add(kTable_NoteValues,
                  note + ' ' + NumberText(details[key].get<double>() * (type == "angle" ? 1.0 : unit)));
}

void AddSceneView(ModelFacts& facts, IProducer& producer, IView const& view)
{
    std::string const name(UTF8String(view.Label()).View());
    IdSet const cameras = view.CameraSet();
    for (unsigned long long i = 0; i < cameras.Size(); ++i)
        if (auto const* const camera = dynamic_cast<ICamera const*>(producer.Load(cameras.At(i))))
        {
            UnitTypeEnum stated = kUnitType_Unknown;
            double const metres = camera->LengthUnit(stated) == kIsValueSpecified_Yes ? MetresOf(stated) : 0.0;
            double const unit = metres > 0.0 ? metres * 1e3 : 1.0;
            Position const eye = camera->CameraPosition();
            UnitVector const direction = camera->CameraDirection();
            AddView(facts, name, {eye.X() * unit, eye.Y() * unit, eye.Z() * unit},
                    {direction[0], direction[1], direction[2]});
            break;
        }
    for (unsigned long long i = 0; i < view.ViewMemberCount(); ++i)
    {
        IdSet const path = view.OccurrencePathAt(i);
        if (!path.IsEmpty() && view.EntityVisibilityAt(i) &&
            dynamic_cast<IAnnotationCallout const*>(producer.Load(path.At(path.Size() - 1))))
            facts.tables[kTable_ViewMembers][name].count = 1.0;
    }
}

std::set<std::string> ScenePropertiesOf(IProducer& producer, IComponent const& component)
{
    std::set<std::string> values;
    auto const add = [&](std::string const& value)
    {
        if (!value.empty())
            values.insert(value);
    };
    if (FileProperties const* const properties = component.FileProperties())
    {
        CustomProperty property;
        for (unsigned long long i = 0; i < properties->CustomPropertyCount(); ++i)
            if (properties->CustomPropertyAt(i, property) == kIsValueSpecified_Yes)
                add(ValueText(property));
    }
    IUniverse const* const universe = producer.LoadUniverse();
    if (!universe)
        return values;
    IdSet const ids = component.PropertyIds();
    for (unsigned long long i = 0; i < ids.Size(); ++i)
    {
        IProperty const* property = nullptr;
        if (universe->PropertyDatabaseOf()->PropertyAt(ids.At(i), property) == kIsValueSpecified_Yes)
            add(ValueText(*property));
    }
    return values;
}

}  // namespace KVR::Certification
