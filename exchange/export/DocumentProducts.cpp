#include "exchange/export/DocumentProducts.h"

#include "exchange/conventions/PropertyNames.h"
#include "framework/api/FileProperties.h"
#include "framework/api/UTF16String.h"
#include "framework/api/UTF8String.h"

namespace KVR
{

namespace
{

using Getter = IsValueSpecifiedEnum (FileProperties::*)(UTF16String&) const;

std::string TextOf(FileProperties const& properties, Getter getter)
{
    UTF16String text;
    return (properties.*getter)(text) == kIsValueSpecified_Yes ? UTF8String(text).Value() : std::string();
}

// The text of a property of that name, given to a target.
bool Takes(SceneProperty const& property, std::string_view name, std::string& target)
{
    auto const* const text = std::get_if<std::string>(&property.value);
    if (!text || property.name != name || !target.empty())
        return false;
    target = *text;
    return true;
}

}  // namespace

ShapeDocument::Product ProductOf(SceneComponent const& component)
{
    ShapeDocument::Product product;
    product.name = component.label;
    if (!component.fileProperties)
        return product;
    product.number = TextOf(*component.fileProperties, &FileProperties::PartNumber);
    product.revision = TextOf(*component.fileProperties, &FileProperties::Revision);
    product.description = TextOf(*component.fileProperties, &FileProperties::Description);
    return product;
}

void AddToProduct(ShapeDocument::Product& product, SceneProperty const& property)
{
    if (Takes(property, kProperty_RevisionDescription, product.revisionDescription))
        return;
    std::string category;
    if (Takes(property, kProperty_ProductCategory, category))
        product.categories.push_back(std::move(category));
    else
        product.properties.push_back(property);
}

ShapeDocument::Usage UsageOf(TDF_Label const& label, std::vector<SceneProperty> const& properties)
{
    ShapeDocument::Usage usage;
    usage.label = label;
    for (SceneProperty const& property : properties)
        if (!Takes(property, kProperty_UsageId, usage.id) &&
            !Takes(property, kProperty_UsageDescription, usage.description) &&
            !Takes(property, kProperty_ReferenceDesignator, usage.designator))
            usage.properties.push_back(property);
    return usage;
}

}  // namespace KVR
