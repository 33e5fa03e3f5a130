#include "exchange/certify/step/StepStructure.h"

#include <algorithm>
#include <stdexcept>

#include "exchange/certify/FactTexts.h"
#include "exchange/certify/step/AddShape.h"

namespace KVR::Certification
{

namespace
{

constexpr std::size_t kDeepestUsage = 1000;
constexpr std::size_t kMostOccurrences = 1'000'000;

}  // namespace

StepStructure::StepStructure(Part21Model const& model, FactProducts const& products, StepLooks const& looks,
                             StepShapes& shapes, ModelFacts& facts)
    : m_model(model), m_products(products), m_looks(looks), m_shapes(shapes), m_facts(facts)
{
    for (auto const& [id, product] : products.All())
        m_representations.insert(product.representations.begin(), product.representations.end());
}

void StepStructure::Read()
{
    m_facts.hasBodies = true;
    for (char const* const table :
         {kTable_Colors, kTable_LineColors, kTable_Layers, kTable_Hidden, kTable_Units, kTable_FaceIds})
        m_facts.tables[table];
    for (Id const id : m_products.Order())
        if (FactProducts::Product const& product = m_products.All().at(id); !product.isUsed)
            Walk(id, product.name, product.name, FactPlace(), false);
    ReadLayers();
}

void StepStructure::Walk(Id id, std::string const& path, std::string const& name, FactPlace const& place, bool isHidden)
{
    if (m_usages.size() > kDeepestUsage || m_facts.occurrences.size() >= kMostOccurrences)
        throw std::runtime_error("its assemblies are too deep or too many");
    FactProducts::Product const& product = m_products.All().at(id);
    StepLooks::Look outer = OverrideOf();
    outer.isHidden = outer.isHidden || isHidden;
    ModelFacts::Occurrence occurrence;
    occurrence.path = path;
    occurrence.name = name;
    occurrence.component = std::to_string(id);
    occurrence.componentName = product.name;
    occurrence.number = product.number;
    occurrence.isPart = product.usages.empty();
    occurrence.isHidden = outer.isHidden;
    StepLooks::Look ofItems = outer;
    for (Id const representation : product.representations)
        if (double const length = m_products.MillimetresOf(representation); length > 0.0)
            occurrence.units.insert(UnitName(length));
    for (Id const representation : product.representations)
        if (StepLooks::Look const* const look = m_looks.Of(representation))
            ofItems.isHidden = ofItems.isHidden || look->isHidden;
    bool const isNew = m_met.insert(id).second;
    for (FactProducts::Item const& item : product.items)
    {
        AddItem(occurrence, item.id, place * item.place, ofItems);
        if (StepShape const* const shape = isNew ? m_shapes.Of(item.id) : nullptr)
            AddFaceIds(m_facts, *shape, item.place,
                       [](Id entity) { return entity == 0 ? std::string() : '#' + std::to_string(entity); });
    }
    m_facts.occurrences.push_back(std::move(occurrence));
    for (FactProducts::Usage const& usage : product.usages)
    {
        std::string const& below = usage.name.empty() ? m_products.All().at(usage.product).name : usage.name;
        m_usages.push_back(usage.id);
        Walk(usage.product, std::string(path).append("/").append(below), below, place * usage.place, outer.isHidden);
        m_usages.pop_back();
    }
}

StepLooks::Look StepStructure::OverrideOf() const
{
    StepLooks::Look all;
    for (StepLooks::Override const& entry : m_looks.Overrides())
    {
        bool const isHere = !entry.usages.empty() &&
                            std::all_of(entry.usages.begin(), entry.usages.end(),
                                        [this](Id usage) {
                                            return std::find(m_usages.begin(), m_usages.end(), usage) != m_usages.end();
                                        });
        if (!isHere)
            continue;
        if (entry.look.surface)
            all.surface = entry.look.surface;
        if (entry.look.line)
            all.line = entry.look.line;
        all.isHidden = all.isHidden || entry.look.isHidden;
    }
    return all;
}

void StepStructure::AddItem(ModelFacts::Occurrence& occurrence, Id item, FactPlace const& place,
                            StepLooks::Look const& outer)
{
    StepShape const* const shape = m_shapes.Of(item);
    if (!shape)
        return;
    AddShape(occurrence, *shape, place);
    StepLooks::Look look = outer;
    if (StepLooks::Look const* const own = m_looks.Of(item))
        look.isHidden = look.isHidden || own->isHidden;
    double const scale = std::cbrt(std::abs(place.Determinant()));
    AddPieces(occurrence.path, item, *shape, scale, look);
    AddHiddenPoints(occurrence.path, item, look.isHidden);
    // What has faces is one piece for each solid, or one.
    if (look.isHidden && shape->faces > 0)
        m_facts.Add(kTable_Hidden, occurrence.path, {}, static_cast<double>(std::max(1ULL, shape->solids)));
}

void StepStructure::AddPieces(std::string const& path, Id item, StepShape const& shape, double scale,
                              StepLooks::Look const& outer)
{
    StepLooks::Look const* const ofItem = m_looks.Of(item);
    for (StepPiece const& piece : shape.pieces)
    {
        std::vector<StepLooks::Look const*> looks{m_looks.Of(piece.entity)};
        for (Id const shell : piece.shells)
            looks.push_back(m_looks.Of(shell));
        looks.push_back(ofItem);
        std::optional<std::string> color = piece.isFace ? outer.surface : outer.line ? outer.line : outer.surface;
        bool isHidden = false;
        for (StepLooks::Look const* const look : looks)
        {
            if (!look)
                continue;
            if (!color)
                color = piece.isFace ? look->surface : look->line ? look->line : look->surface;
            isHidden = isHidden || look->isHidden;
        }
        double const area = piece.bulk.area * scale * scale;
        double const length = piece.bulk.length * scale;
        if (color)
            m_facts.Add(piece.isFace ? kTable_Colors : kTable_LineColors, ModelFacts::Joined(path, *color),
                        {piece.isFace ? area : length});
        // Faces of what is hidden as a whole do not count by themselves.
        if (piece.isFace ? isHidden && !outer.isHidden : isHidden || outer.isHidden)
            m_facts.Add(kTable_Hidden, path);
    }
}

void StepStructure::AddHiddenPoints(std::string const& path, Id item, bool isAllHidden)
{
    if (!m_model.Is(item, "GEOMETRIC_CURVE_SET") && !m_model.Is(item, "GEOMETRIC_SET"))
        return;
    for (Id const element : m_model.Parameter(item, 1).References())
        if (m_model.Is(element, "CARTESIAN_POINT"))
            if (StepLooks::Look const* const look = m_looks.Of(element); isAllHidden || (look && look->isHidden))
                m_facts.Add(kTable_Hidden, path);
}

bool StepStructure::IsOfProduct(Id member) const
{
    return m_representations.count(member) != 0 || m_shapes.Has(member);
}

void StepStructure::ReadLayers()
{
    for (Id const id : m_model.Of("PRESENTATION_LAYER_ASSIGNMENT"))
    {
        auto const parameters = m_model.Parameters(id);
        if (parameters.size() < 3)
            continue;
        std::unordered_set<Id> members;
        for (Id const member : parameters[2].References())
        {
            bool const isStyled = m_model.Is(member, "STYLED_ITEM") || m_model.Is(member, "OVER_RIDING_STYLED_ITEM");
            Id const item = isStyled ? m_model.Parameter(member, 2).reference : member;
            if (IsOfProduct(item))
                members.insert(item);
        }
        if (!members.empty())
            m_facts.Add(kTable_Layers, parameters[0].text, {}, static_cast<double>(members.size()));
        else
            m_facts.Add(kTable_OtherLayers, parameters[0].text, {}, 1.0);
    }
}

}  // namespace KVR::Certification
