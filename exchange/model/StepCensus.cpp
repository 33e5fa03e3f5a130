#include "exchange/model/StepCensus.h"

#include <algorithm>
#include <unordered_map>

#include "exchange/model/Part21Values.h"
#include "exchange/model/StepContent.h"
#include "exchange/model/StepTypes.h"

namespace KVR
{

namespace
{

class Census
{
public:
    Census(StepContent const& step, std::unordered_set<Part21File::Number> const& annotations)
        : m_step(step),
          m_file(step.file),
          m_annotations(annotations),
          m_isCarried(m_file.Entities().size(), false),
          m_roles(m_file.Types().size())
    {
        std::transform(m_file.Types().begin(), m_file.Types().end(), m_roles.begin(),
                       [](std::string const& type) { return StepRoleOf(type); });
    }

    void Count(Losses& losses)
    {
        for (std::size_t place = 0; place < m_isCarried.size(); ++place)
            AddLinks(place);
        for (std::size_t place = 0; place < m_isCarried.size(); ++place)
            if (IsRoot(place))
                Carry(place);
        for (std::size_t place = 0; place < m_isCarried.size(); ++place)
            if (!m_isCarried[place])
                losses.AddItem(KindOf(place), '#' + std::to_string(At(place).number) + ' ' + m_file.TypeOf(At(place)));
    }

private:
    Part21File::Entity const& At(std::size_t place) const { return m_file.Entities()[place]; }
    StepRole const& RoleOf(std::size_t place) const { return m_roles[At(place).type]; }

    // An entity that says something of another one waits for that.
    void AddLinks(std::size_t place)
    {
        StepRole const& role = RoleOf(place);
        if (role.kind != StepRole::Kind::kLink)
            return;
        std::string const& type = m_file.TypeOf(At(place));
        Part21File::Values const values = m_file.ParametersOf(At(place), type.substr(0, type.find(' ')));
        for (int const parameter : role.links)
            if (parameter >= 0)
                for (Part21File::Number const number : Part21ReferencesAt(values, static_cast<std::size_t>(parameter)))
                    m_links[number].push_back(place);
    }

    bool IsRoot(std::size_t place) const
    {
        Part21File::Number const number = At(place).number;
        switch (RoleOf(place).kind)
        {
            case StepRole::Kind::kRoot:
                return true;
            case StepRole::Kind::kDrawing:
                return m_step.hasAnnotations;
            case StepRole::Kind::kAnnotation:
                return m_annotations.count(number) > 0;
            case StepRole::Kind::kProperty:
                return m_step.products.carried.count(number) > 0;
            default:
                return false;
        }
    }

    void Carry(std::size_t root)
    {
        std::vector<std::size_t> work;
        auto const reach = [&](std::size_t place)
        {
            if (place >= m_isCarried.size() || m_isCarried[place] || m_step.missing.count(At(place).number) > 0)
                return;
            m_isCarried[place] = true;
            work.push_back(place);
        };
        reach(root);
        while (!work.empty())
        {
            Part21File::Entity const& entity = At(work.back());
            work.pop_back();
            for (std::uint32_t i = 0; i < entity.referenceCount; ++i)
            {
                std::size_t const place = m_file.PlaceOf(m_file.References()[entity.firstReference + i]);
                if (place < m_isCarried.size() && RoleOf(place).kind == StepRole::Kind::kDetail)
                    reach(place);
            }
            if (auto const links = m_links.find(entity.number); links != m_links.end())
                std::for_each(links->second.begin(), links->second.end(), reach);
        }
    }

    std::string KindOf(std::size_t place) const
    {
        if (m_step.missing.count(At(place).number) > 0)
            return "shapes and products of the model that could not be made";
        if (RoleOf(place).kind != StepRole::Kind::kUnknown)
            return "entities that nothing in the scene uses";
        return StepLossOf(m_file.TypeOf(At(place)));
    }

    StepContent const& m_step;
    Part21File const& m_file;
    std::unordered_set<Part21File::Number> const& m_annotations;
    std::vector<bool> m_isCarried;
    /// By types.
    std::vector<StepRole> m_roles;
    std::unordered_map<Part21File::Number, std::vector<std::size_t>> m_links;
};

}  // namespace

void CountStepLosses(StepContent const& step, std::unordered_set<Part21File::Number> const& annotations, Losses& losses)
{
    Census(step, annotations).Count(losses);
}

}  // namespace KVR
