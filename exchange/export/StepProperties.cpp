#include "exchange/export/StepProperties.h"

#include <StepBasic_DerivedUnit.hxx>
#include <StepBasic_DerivedUnitElement.hxx>
#include <StepBasic_DimensionalExponents.hxx>
#include <StepBasic_HArray1OfDerivedUnitElement.hxx>
#include <StepBasic_HArray1OfProduct.hxx>
#include <StepBasic_MeasureValueMember.hxx>
#include <StepBasic_Product.hxx>
#include <StepBasic_ProductDefinition.hxx>
#include <StepBasic_ProductDefinitionFormation.hxx>
#include <StepBasic_ProductRelatedProductCategory.hxx>
#include <StepBasic_RatioUnit.hxx>
#include <StepBasic_SiUnitAndLengthUnit.hxx>
#include <StepBasic_SiUnitAndMassUnit.hxx>
#include <StepBasic_Unit.hxx>
#include <StepData_StepModel.hxx>
#include <StepRepr_CharacterizedDefinition.hxx>
#include <StepRepr_DescriptiveRepresentationItem.hxx>
#include <StepRepr_IntegerRepresentationItem.hxx>
#include <StepRepr_MeasureRepresentationItem.hxx>
#include <StepRepr_NextAssemblyUsageOccurrence.hxx>
#include <StepRepr_ProductDefinitionShape.hxx>
#include <StepRepr_PropertyDefinition.hxx>
#include <StepRepr_PropertyDefinitionRepresentation.hxx>
#include <StepRepr_Representation.hxx>
#include <StepRepr_RepresentationContext.hxx>
#include <StepShape_ContextDependentShapeRepresentation.hxx>
#include <StepShape_ShapeDefinitionRepresentation.hxx>
#include <TCollection_HAsciiString.hxx>
#include <TransferBRep.hxx>
#include <TransferBRep_ShapeMapper.hxx>
#include <Transfer_FinderProcess.hxx>
#include <XCAFDoc_ShapeTool.hxx>
#include <unordered_map>
#include <unordered_set>

#include "exchange/conventions/PropertyNames.h"
#include "exchange/export/StepEntities.h"
#include "exchange/export/StepModelEntities.h"
#include "exchange/export/StepPropertyUnit.h"
#include "exchange/export/StepTransfer.h"

namespace KVR
{

namespace
{

using opencascade::handle;

constexpr char kMaterialProperty[] = "material property";
constexpr std::size_t kEndSize = sizeof kProperty_UnitEnd - 1;

class PropertyWriter
{
public:
    explicit PropertyWriter(StepTransfer& step) : m_step(step) {}

    void Write()
    {
        for (auto const& category : StepEntitiesOf<StepBasic_ProductRelatedProductCategory>(m_step.model))
            for (int i = 1; i <= category->NbProducts(); ++i)
                m_categories.emplace(category->ProductsValue(i).get(), category);
        for (ShapeDocument::Product const& product : m_step.document.products)
            WriteProduct(product);
        for (ShapeDocument::Usage const& usage : m_step.document.usages)
            WriteUsage(usage);
    }

private:
    void WriteProduct(ShapeDocument::Product const& said)
    {
        handle<StepShape_ShapeDefinitionRepresentation> const shape = m_step.DefinitionOf(said.label);
        if (shape.IsNull())
            return;
        handle<StepBasic_ProductDefinition> const definition =
            shape->Definition().PropertyDefinition()->Definition().ProductDefinition();
        if (definition.IsNull())
            return;
        handle<StepBasic_ProductDefinitionFormation> const formation = definition->Formation();
        handle<StepBasic_Product> const product = formation->OfProduct();
        if (!said.name.empty())
            product->SetName(StepString(said.name));
        if (!said.number.empty())
            product->SetId(StepString(said.number));
        if (!said.description.empty())
            product->SetDescription(StepString(said.description));
        if (!said.revision.empty())
            formation->SetId(StepString(said.revision));
        if (!said.revisionDescription.empty())
            formation->SetDescription(StepString(said.revisionDescription));
        WriteCategories(said, product);
        StepRepr_CharacterizedDefinition owner;
        owner.SetValue(definition);
        WriteMaterial(said.material, owner);
        WriteAll(said.properties, owner);
    }

    // Open CASCADE's writer has none of assemblies, and gives densities a unit that they are not in.
    void WriteMaterial(ShapeDocument::Product::Material const& material, StepRepr_CharacterizedDefinition const& owner)
    {
        if (material.name.empty())
            return;
        handle<StepRepr_DescriptiveRepresentationItem> const name = new StepRepr_DescriptiveRepresentationItem;
        name->Init(StepString(material.name), StepString(material.description));
        WriteOne({kMaterialProperty, "material name", "material name"}, name, owner);
        if (!(material.density > 0.0))
            return;
        handle<StepBasic_MeasureValueMember> const value = new StepBasic_MeasureValueMember;
        value->SetName(material.densityType.c_str());
        value->SetReal(material.density);
        handle<StepRepr_MeasureRepresentationItem> const density = new StepRepr_MeasureRepresentationItem;
        density->Init(StepString("density measure"), value, DensityUnit());
        WriteOne({kMaterialProperty, "density", "density"}, density, owner);
    }

    // Grams for each cubic millimetre.
    StepBasic_Unit DensityUnit()
    {
        if (!m_densityUnit.IsNull())
            return m_densityUnit;
        handle<StepBasic_SiUnitAndMassUnit> const gram = new StepBasic_SiUnitAndMassUnit;
        gram->Init(Standard_False, StepBasic_spMilli, StepBasic_sunGram);
        handle<StepBasic_SiUnitAndLengthUnit> const millimetre = new StepBasic_SiUnitAndLengthUnit;
        millimetre->Init(Standard_True, StepBasic_spMilli, StepBasic_sunMetre);
        handle<StepBasic_DerivedUnitElement> const mass = new StepBasic_DerivedUnitElement;
        mass->Init(gram, 1.0);
        handle<StepBasic_DerivedUnitElement> const volume = new StepBasic_DerivedUnitElement;
        volume->Init(millimetre, -3.0);
        handle<StepBasic_HArray1OfDerivedUnitElement> const elements = new StepBasic_HArray1OfDerivedUnitElement(1, 2);
        elements->SetValue(1, mass);
        elements->SetValue(2, volume);
        handle<StepBasic_DerivedUnit> const unit = new StepBasic_DerivedUnit;
        unit->Init(elements);
        m_densityUnit.SetValue(unit);
        m_step.model->AddWithRefs(unit);
        return m_densityUnit;
    }

    // The first takes the place of that which the writer gives every product; a name that is empty is none.
    void WriteCategories(ShapeDocument::Product const& said, handle<StepBasic_Product> const& product)
    {
        auto const known = m_categories.find(product.get());
        if (said.categories.empty() && known != m_categories.end() && known->second->NbProducts() == 1)
            known->second->SetName(StepString(""));
        for (std::size_t i = 0; i < said.categories.size(); ++i)
        {
            handle<TCollection_HAsciiString> const name = StepString(said.categories[i]);
            if (i == 0 && known != m_categories.end() && known->second->NbProducts() == 1)
            {
                known->second->SetName(name);
                continue;
            }
            handle<StepBasic_HArray1OfProduct> const products = new StepBasic_HArray1OfProduct(1, 1);
            products->SetValue(1, product);
            handle<StepBasic_ProductRelatedProductCategory> const category =
                new StepBasic_ProductRelatedProductCategory;
            category->Init(name, Standard_False, {}, products);
            m_step.model->AddWithRefs(category);
        }
    }

    void WriteUsage(ShapeDocument::Usage const& said)
    {
        handle<Transfer_FinderProcess> const process = m_step.Process();
        handle<StepShape_ContextDependentShapeRepresentation> shape;
        if (!process->FindTypedTransient(TransferBRep::ShapeMapper(process, XCAFDoc_ShapeTool::GetShape(said.label)),
                                         STANDARD_TYPE(StepShape_ContextDependentShapeRepresentation), shape))
            return;
        handle<StepRepr_NextAssemblyUsageOccurrence> const usage =
            handle<StepRepr_NextAssemblyUsageOccurrence>::DownCast(
                shape->RepresentedProductRelation()->Definition().ProductDefinitionRelationship());
        if (usage.IsNull())
            return;
        if (!said.name.empty())
            usage->SetName(StepString(said.name));
        if (!said.id.empty())
            usage->SetId(StepString(said.id));
        if (!said.description.empty())
            usage->SetDescription(StepString(said.description));
        if (!said.designator.empty())
            usage->Init(usage->Id(), usage->Name(), usage->HasDescription(), usage->Description(),
                        usage->RelatingProductDefinition(), usage->RelatedProductDefinition(), Standard_True,
                        StepString(said.designator));
        StepRepr_CharacterizedDefinition owner;
        owner.SetValue(usage);
        WriteAll(said.properties, owner);
    }

    void WriteAll(std::vector<SceneProperty> const& properties, StepRepr_CharacterizedDefinition const& owner)
    {
        std::unordered_map<std::string, StepPropertyUnit> const units = UnitsOf(properties);
        for (SceneProperty const& property : properties)
        {
            if (property.name.ends_with(kProperty_UnitEnd) &&
                units.count(property.name.substr(0, property.name.size() - kEndSize)) > 0)
                continue;
            auto const unit = units.find(property.name);
            handle<StepRepr_RepresentationItem> const item =
                unit == units.end() ? ItemOf(property) : MeasureOf(NumberOf(property).value_or(0.0), unit->second);
            if (item.IsNull())
                m_step.document.notCarried.Add("custom properties");
            else
                WriteOne({property.name, {}, {}}, item, owner);
        }
    }

    // Those that a file can say, by the names of the numbers that have them.
    static std::unordered_map<std::string, StepPropertyUnit> UnitsOf(std::vector<SceneProperty> const& properties)
    {
        std::unordered_map<std::string, StepPropertyUnit> units;
        for (SceneProperty const& property : properties)
            if (auto const* const text = std::get_if<std::string>(&property.value);
                text && property.name.ends_with(kProperty_UnitEnd))
                if (auto const unit = StepPropertyUnit::Of(*text))
                    units.emplace(property.name.substr(0, property.name.size() - kEndSize), *unit);
        std::unordered_set<std::string> numbers;
        for (SceneProperty const& property : properties)
            if (!std::holds_alternative<int>(property.value) && NumberOf(property))
                numbers.insert(property.name);
        std::erase_if(units, [&](auto const& entry) { return numbers.count(entry.first) == 0; });
        return units;
    }

    static handle<StepRepr_RepresentationItem> MeasureOf(double number, StepPropertyUnit const& unit)
    {
        handle<StepBasic_MeasureValueMember> const value = new StepBasic_MeasureValueMember;
        value->SetName(unit.measure);
        value->SetReal(number);
        handle<StepRepr_MeasureRepresentationItem> const item = new StepRepr_MeasureRepresentationItem;
        item->Init(StepString(""), value, unit.unit);
        return item.get();
    }

    handle<StepRepr_RepresentationItem> ItemOf(SceneProperty const& property)
    {
        if (auto const* const text = std::get_if<std::string>(&property.value))
        {
            handle<StepRepr_DescriptiveRepresentationItem> const item = new StepRepr_DescriptiveRepresentationItem;
            item->Init(StepString(""), StepString(*text));
            return item.get();
        }
        if (auto const* const integer = std::get_if<int>(&property.value))
        {
            handle<StepRepr_IntegerRepresentationItem> const item = new StepRepr_IntegerRepresentationItem;
            item->Init(StepString(""), *integer);
            return item.get();
        }
        std::optional<double> const number = NumberOf(property);
        if (!number)
            return {};
        handle<StepBasic_MeasureValueMember> const value = new StepBasic_MeasureValueMember;
        value->SetName("RATIO_MEASURE");
        value->SetReal(*number);
        handle<StepRepr_MeasureRepresentationItem> const item = new StepRepr_MeasureRepresentationItem;
        item->Init(StepString(""), value, PlainUnit());
        return item.get();
    }

    // That of a number without one.
    StepBasic_Unit PlainUnit()
    {
        if (!m_unit.IsNull())
            return m_unit;
        handle<StepBasic_DimensionalExponents> const exponents = new StepBasic_DimensionalExponents;
        exponents->Init(0.0, 0.0, 0.0, 0.0, 0.0, 0.0, 0.0);
        handle<StepBasic_RatioUnit> const unit = new StepBasic_RatioUnit;
        unit->Init(exponents);
        m_unit.SetValue(unit);
        m_step.model->AddWithRefs(unit);
        return m_unit;
    }

    struct Names
    {
        std::string property;
        std::string description;
        std::string representation;
    };

    void WriteOne(Names const& names, handle<StepRepr_RepresentationItem> const& item,
                  StepRepr_CharacterizedDefinition const& owner)
    {
        if (m_context.IsNull())
        {
            m_context = new StepRepr_RepresentationContext;
            m_context->Init(StepString(""), StepString(""));
        }
        handle<StepRepr_PropertyDefinition> const property = new StepRepr_PropertyDefinition;
        property->Init(StepString(names.property), !names.description.empty(), StepString(names.description), owner);
        handle<StepRepr_Representation> const representation = new StepRepr_Representation;
        representation->Init(StepString(names.representation), StepArray({item}), m_context);
        handle<StepRepr_PropertyDefinitionRepresentation> const link = new StepRepr_PropertyDefinitionRepresentation;
        StepRepr_RepresentedDefinition represented;
        represented.SetValue(property);
        link->Init(represented, representation);
        m_step.model->AddWithRefs(link);
    }

    StepTransfer& m_step;
    /// By products.
    std::unordered_map<Standard_Transient const*, handle<StepBasic_ProductRelatedProductCategory>> m_categories;
    handle<StepRepr_RepresentationContext> m_context;
    StepBasic_Unit m_unit;
    StepBasic_Unit m_densityUnit;
};

}  // namespace

void WriteStepProperties(StepTransfer& step)
{
    PropertyWriter(step).Write();
}

}  // namespace KVR
