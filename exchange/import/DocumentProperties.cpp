#include "exchange/import/DocumentProperties.h"

#include <fmt/format.h>
#include <TColStd_DataMapOfStringInteger.hxx>
#include <TCollection_HAsciiString.hxx>
#include <TDataStd_NamedData.hxx>
#include <TDataStd_TreeNode.hxx>
#include <XCAFDoc.hxx>
#include <XCAFDoc_Area.hxx>
#include <XCAFDoc_Centroid.hxx>
#include <XCAFDoc_DocumentTool.hxx>
#include <XCAFDoc_MaterialTool.hxx>
#include <XCAFDoc_Volume.hxx>
#include <cmath>
#include <tuple>

#include "exchange/conventions/PropertyNames.h"
#include "exchange/model/CleanText.h"
#include "framework/api/UTF16String.h"

namespace KVR
{

namespace
{

class Collector
{
public:
    explicit Collector(Losses& losses) : m_losses(losses) {}

    std::vector<Authoring::PropertyValue> properties;

    void Add(UTF8String const& name, double value)
    {
        // A scene has no text for these.
        if (!std::isfinite(value))
        {
            m_losses.AddItem("properties that are no number", std::string(name.View()));
            return;
        }
        properties.emplace_back();
        properties.back().SetProperty(UTF16String(name), value);
    }
    void Add(UTF8String const& name, int value)
    {
        properties.emplace_back();
        properties.back().SetProperty(UTF16String(name), value);
    }
    void Add(UTF8String const& name, bool value)
    {
        properties.emplace_back();
        properties.back().SetProperty(UTF16String(name), value);
    }
    void Add(UTF8String const& name, UTF8String const& text)
    {
        properties.emplace_back();
        properties.back().SetProperty(UTF16String(name), UTF16String(text));
    }

private:
    Losses& m_losses;
};

// As many digits as files hold.
std::string NumberText(double value)
{
    return fmt::format("{:.12g}", value);
}

void AddValidation(Collector& collector, TDF_Label const& label)
{
    Standard_Real value = 0.0;
    if (XCAFDoc_Volume::Get(label, value))
        collector.Add("geometric validation property: volume", value);
    if (XCAFDoc_Area::Get(label, value))
        collector.Add("geometric validation property: area", value);
    gp_Pnt centroid;
    if (XCAFDoc_Centroid::Get(label, centroid))
        collector.Add("geometric validation property: centroid",
                      UTF8String(NumberText(centroid.X() + 0.0) + ' ' + NumberText(centroid.Y() + 0.0) + ' ' +
                                 NumberText(centroid.Z() + 0.0)));
}

void AddText(Collector& collector, char const* name, std::string const& text)
{
    if (!text.empty())
        collector.Add(UTF8String(name), CleanText(text));
}

std::string TextOf(Handle(TCollection_HAsciiString) const& text)
{
    return text.IsNull() ? std::string() : std::string(text->ToCString());
}

// As Open CASCADE read it.
StepMaterial MaterialOf(TDF_Label const& label)
{
    StepMaterial material;
    Handle(TDataStd_TreeNode) node;
    if (!label.FindAttribute(XCAFDoc::MaterialRefGUID(), node) || !node->HasFather())
        return material;
    Handle(TCollection_HAsciiString) name;
    Handle(TCollection_HAsciiString) description;
    Handle(TCollection_HAsciiString) densityName;
    Handle(TCollection_HAsciiString) densityType;
    Standard_Real density = 0.0;
    auto const tool = XCAFDoc_DocumentTool::MaterialTool(label);
    if (!tool->GetMaterial(node->Father()->Label(), name, description, density, densityName, densityType))
        return material;
    material = {TextOf(name), TextOf(description), std::nullopt, TextOf(densityType)};
    if (density > 0.0)
        material.density = density;
    return material;
}

// What the file says of it goes before: Open CASCADE passes over materials of products without a shape of their own,
// and over the exponents of units.
void AddMaterial(Collector& collector, StepMaterial material, StepMaterial const& stated)
{
    if (!stated.name.empty())
        std::tie(material.name, material.description) = std::tie(stated.name, stated.description);
    if (stated.density)
        std::tie(material.density, material.densityType) = std::tie(stated.density, stated.densityType);
    AddText(collector, "material", material.name);
    AddText(collector, "material description", material.description);
    if (!material.density)
        return;
    collector.Add("material density", *material.density);
    AddText(collector, "material density type", material.densityType);
}

void AddNamedData(Collector& collector, TDF_Label const& label)
{
    Handle(TDataStd_NamedData) data;
    if (!label.FindAttribute(TDataStd_NamedData::GetID(), data))
        return;
    data->LoadDeferredData(false);
    if (data->HasIntegers())
        for (TColStd_DataMapOfStringInteger::Iterator entry(data->GetIntegersContainer()); entry.More(); entry.Next())
            collector.Add(CleanExtendedText(entry.Key()), entry.Value());
    if (data->HasReals())
        for (TDataStd_DataMapOfStringReal::Iterator entry(data->GetRealsContainer()); entry.More(); entry.Next())
            collector.Add(CleanExtendedText(entry.Key()), entry.Value());
    if (data->HasStrings())
        for (TDataStd_DataMapOfStringString::Iterator entry(data->GetStringsContainer()); entry.More(); entry.Next())
            collector.Add(CleanExtendedText(entry.Key()), CleanExtendedText(entry.Value()));
}

void AddStated(Collector& collector, std::vector<StepProperty> const& properties)
{
    for (StepProperty const& property : properties)
    {
        UTF8String const name = CleanText(property.name);
        if (auto const* const text = std::get_if<std::string>(&property.value))
            collector.Add(name, CleanText(*text));
        else if (auto const* const number = std::get_if<double>(&property.value))
            collector.Add(name, *number);
        else if (auto const* const integer = std::get_if<int>(&property.value))
            collector.Add(name, *integer);
        else
            collector.Add(name, std::get<bool>(property.value));
        if (!property.unit.empty())
            collector.Add(CleanText(property.name + kProperty_UnitEnd), CleanText(property.unit));
    }
}

void AddDocumented(Collector& collector, TDF_Label const& label, StepMaterial const& material)
{
    AddValidation(collector, label);
    AddMaterial(collector, MaterialOf(label), material);
    AddNamedData(collector, label);
}

}  // namespace

std::optional<Authoring::FilePropertiesRecord> PropertiesOfComponent(ModelDocument const& model, TDF_Label const& label,
                                                                     Losses& losses)
{
    Authoring::FilePropertiesRecord record;
    Collector collector(losses);
    StepProduct const* const product = model.products.Seek(label);
    AddDocumented(collector, label, product ? product->material : StepMaterial());
    if (product)
    {
        for (auto const& [element, text] :
             {std::pair("PartNumber", &product->number), std::pair("Revision", &product->revision),
              std::pair("Description", &product->description)})
            if (!text->empty())
                record.texts.emplace_back(element, CleanText(*text));
        AddText(collector, kProperty_RevisionDescription, product->revisionDescription);
        for (std::string const& category : product->categories)
            AddText(collector, kProperty_ProductCategory, category);
        AddStated(collector, product->properties);
    }
    record.custom = std::move(collector.properties);
    if (record.texts.empty() && record.custom.empty())
        return std::nullopt;
    return record;
}

std::vector<Authoring::PropertyValue> PropertiesOfUsage(ModelDocument const& model, TDF_Label const& label,
                                                        Losses& losses)
{
    Collector collector(losses);
    AddDocumented(collector, label, {});
    if (StepUsage const* const usage = model.usages.Seek(label))
    {
        AddText(collector, kProperty_UsageId, usage->id);
        AddText(collector, kProperty_UsageDescription, usage->description);
        AddText(collector, kProperty_ReferenceDesignator, usage->designator);
        AddStated(collector, usage->properties);
    }
    return std::move(collector.properties);
}

}  // namespace KVR
