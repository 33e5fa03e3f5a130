#include "exchange/certify/step/StepLooks.h"

#include <algorithm>
#include <map>

#include "exchange/certify/ModelFacts.h"

namespace KVR::Certification
{

namespace
{

using Id = Part21Model::Id;

// Styles in styles that are deeper are a damaged file's.
constexpr int kDeepestStyle = 20;

std::optional<std::array<double, 3>> NamedColor(std::string const& name)
{
    static std::map<std::string, std::array<double, 3>> const colors{
        {"red", {1, 0, 0}},     {"green", {0, 1, 0}}, {"blue", {0, 0, 1}},  {"yellow", {1, 1, 0}},
        {"magenta", {1, 0, 1}}, {"cyan", {0, 1, 1}},  {"black", {0, 0, 0}}, {"white", {1, 1, 1}}};
    auto const found = colors.find(name);
    return found == colors.end() ? std::nullopt : std::optional(found->second);
}

void Take(std::optional<std::string>& target, std::optional<std::string> color)
{
    if (!target)
        target = std::move(color);
}

}  // namespace

StepLooks::StepLooks(Part21Model const& model, FactProducts const& products) : m_model(model), m_products(products)
{
    ReadStyledItems();
    ReadHidden();
}

StepLooks::Look const* StepLooks::Of(Id item) const
{
    auto const found = m_looks.find(item);
    return found == m_looks.end() ? nullptr : &found->second;
}

void StepLooks::ReadStyledItems()
{
    // What overrides comes first, so that it stays.
    for (Id const id : m_model.Of("CONTEXT_DEPENDENT_OVER_RIDING_STYLED_ITEM"))
    {
        auto own = m_model.Parameters(id, "CONTEXT_DEPENDENT_OVER_RIDING_STYLED_ITEM");
        if (own.empty())
            continue;
        Override entry;
        for (Id const context : own.back().References())
            if (Id const usage = m_products.UsageOf(context))
                entry.usages.push_back(usage);
        // In an entity of a single type all parameters stand in one row.
        auto const styled = m_model.Is(id, "STYLED_ITEM") ? m_model.Parameters(id, "STYLED_ITEM") : own;
        for (std::size_t i = 0; i + 1 < styled.size(); ++i)
            for (Id const style : styled[i].References())
                ReadStyle(style, entry.look, 0);
        m_overrideOf[id] = m_overrides.size();
        m_overrides.push_back(std::move(entry));
    }
    for (char const* const type : {"OVER_RIDING_STYLED_ITEM", "STYLED_ITEM"})
        for (Id const id : m_model.Of(type))
        {
            if (m_overrideOf.count(id) != 0)
                continue;
            bool const isPart = m_model.Is(id, "REPRESENTATION_ITEM");
            auto const parameters = m_model.Parameters(id, isPart ? "STYLED_ITEM" : type);
            std::size_t const first = isPart ? 0 : 1;
            if (parameters.size() < first + 2)
                continue;
            Look look;
            for (Id const style : parameters[first].References())
                ReadStyle(style, look, 0);
            Look& known = m_looks[parameters[first + 1].reference];
            Take(known.surface, look.surface);
            Take(known.line, look.line);
        }
}

void StepLooks::ReadHidden()
{
    for (Id const id : m_model.Of("INVISIBILITY"))
        for (Id const item : m_model.Parameter(id, 0).References())
        {
            if (auto const known = m_overrideOf.find(item); known != m_overrideOf.end())
                m_overrides[known->second].look.isHidden = true;
            else if (m_model.Is(item, "STYLED_ITEM") || m_model.Is(item, "OVER_RIDING_STYLED_ITEM"))
            {
                bool const isPart = m_model.Is(item, "REPRESENTATION_ITEM");
                m_looks[m_model.Parameter(item, isPart ? 1 : 2, isPart ? "STYLED_ITEM" : "").reference].isHidden = true;
            }
            else if (m_model.Is(item, "PRESENTATION_LAYER_ASSIGNMENT"))
                for (Id const member : m_model.Parameter(item, 2).References())
                {
                    bool const isStyled = m_model.Is(member, "STYLED_ITEM");
                    m_looks[isStyled ? m_model.Parameter(member, 2).reference : member].isHidden = true;
                }
            else
                m_looks[item].isHidden = true;
        }
}

void StepLooks::ReadStyle(Id style, Look& look, int level) const
{
    if (level > kDeepestStyle)
        return;
    auto const types = m_model.TypesOf(style);
    if (types.empty())
        return;
    auto const parameters = m_model.Parameters(style);
    if (types.front() == "CURVE_STYLE" && parameters.size() >= 4)
        Take(look.line, ColorOf(parameters[3].reference, 1.0, 0));
    else if (types.front() == "SURFACE_STYLE_FILL_AREA" || types.front() == "SURFACE_STYLE_RENDERING")
    {
        for (Part21Parameter const& value : parameters)
            for (Id const below : value.References())
                Take(look.surface, ColorOf(below, 1.0, 0));
    }
    else if (types.front() == "SURFACE_STYLE_RENDERING_WITH_PROPERTIES" && parameters.size() >= 3)
    {
        double alpha = 1.0;
        for (Id const property : parameters[2].References())
            if (m_model.Is(property, "SURFACE_STYLE_TRANSPARENT"))
                alpha = 1.0 - m_model.Parameter(property, 0).Number();
        // It says more than a filling does, also of one that came before.
        if (auto color = ColorOf(parameters[1].reference, alpha, 0))
            look.surface = std::move(color);
    }
    else if (types.front() == "PRESENTATION_STYLE_ASSIGNMENT" || types.front() == "PRESENTATION_STYLE_BY_CONTEXT" ||
             types.front() == "SURFACE_STYLE_USAGE" || types.front() == "SURFACE_SIDE_STYLE")
        for (Part21Parameter const& value : parameters)
            for (Id const below : value.References())
                ReadStyle(below, look, level + 1);
}

std::optional<std::string> StepLooks::ColorOf(Id id, double alpha, int level) const
{
    auto const types = m_model.TypesOf(id);
    if (types.empty() || level > kDeepestStyle)
        return {};
    auto const parameters = m_model.Parameters(id);
    if (types.front() == "COLOUR_RGB" && parameters.size() >= 4)
        return ColorText(parameters[1].Number(), parameters[2].Number(), parameters[3].Number(), alpha);
    if (m_model.Is(id, "DRAUGHTING_PRE_DEFINED_COLOUR") || m_model.Is(id, "PRE_DEFINED_COLOUR"))
    {
        for (std::string_view const type : types)
            for (Part21Parameter const& value : m_model.Parameters(id, type))
                if (auto const color = NamedColor(value.text))
                    return ColorText((*color)[0], (*color)[1], (*color)[2], alpha);
        return {};
    }
    for (Part21Parameter const& value : parameters)
        for (Id const below : value.References())
            if (auto color = ColorOf(below, alpha, level + 1))
                return color;
    return {};
}

}  // namespace KVR::Certification
