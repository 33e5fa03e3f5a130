#include <fmt/format.h>

#include <algorithm>
#include <cmath>

#include "exchange/certify/Certificate.h"
#include "exchange/certify/CertificateNumbers.h"

namespace KVR::Certification
{

using namespace CertificateNumbers;

void Certificate::AddStructure()
{
    auto const components = [this](std::size_t stage, bool areParts) -> std::optional<std::vector<double>>
    {
        if (!m_folded[stage].hasStructure)
            return {};
        std::set<std::string> all;
        for (auto const& known : m_folded[stage].nodes)
            if (known.second.isPart == areParts)
                all.insert(known.second.components.begin(), known.second.components.end());
        return std::vector<double>{static_cast<double>(all.size())};
    };
    bool const isAllShown = m_unseen.empty();
    auto const counts = [this, isAllShown](std::size_t stage) { return isAllShown || HasPlaceForHidden(stage); };
    AddTotal(
        "assemblies", [&](std::size_t s) { return counts(s) ? components(s, false) : std::nullopt; }, false);
    AddTotal(
        "parts", [&](std::size_t s) { return counts(s) ? components(s, true) : std::nullopt; }, false);
    auto const structured = [this](std::size_t stage, auto const& ask) -> std::optional<Table>
    {
        Table table;
        if (!m_folded[stage].hasStructure)
            return {};
        for (auto const& [path, node] : m_folded[stage].nodes)
            ask(table, path, node);
        for (std::string const& path : m_unseen)
            if (!HasPlaceForHidden(stage) && m_folded[stage].nodes.count(path) == 0)
                ask(table, path, m_folded.front().nodes.at(path));
        return table;
    };
    AddTable(
        "occurrences",
        [&](std::size_t stage)
        {
            return structured(stage, [](Table& table, std::string const& path, Node const& node)
                              { table[path].count += static_cast<double>(node.count); });
        },
        OfCounts, 0.0, false);
    AddTable(
        "names",
        [&](std::size_t stage)
        {
            return structured(stage,
                              [](Table& table, std::string const&, Node const& node)
                              {
                                  for (std::string const& name : node.names)
                                      if (!name.empty())
                                          table[name].count = 1.0;
                              });
        },
        OfPresence, 0.0);
    AddTable(
        "part numbers",
        [&](std::size_t stage) -> std::optional<Table>
        {
            if (!Has(stage, kTable_Properties))
                return {};
            return structured(stage,
                              [](Table& table, std::string const&, Node const& node)
                              {
                                  for (std::string const& number : node.numbers)
                                      table[number].count = 1.0;
                              });
        },
        OfPresence, 0.0);
}

void Certificate::AddOrganisation()
{
    AddTable(
        kTable_Units,
        [this](std::size_t stage) -> std::optional<Table>
        {
            if (!Has(stage, kTable_Units))
                return {};
            Table table;
            for (auto const& [path, node] : m_folded[stage].nodes)
            {
                // What has no shapes may state any.
                auto const first = m_folded.front().nodes.find(path);
                if (first != m_folded.front().nodes.end() && !first->second.units.empty() &&
                    (first->second.faces > 0 || first->second.bodies.length > 0.0 || first->second.triangles > 0))
                    for (std::string const& unit : node.units)
                        table[ModelFacts::Joined(path, unit)].count = 1.0;
            }
            return table;
        },
        OfPresence, 0.0);
    AddTableOf(kTable_Layers, OfCounts, 0.0);
    AddTable(
        kTable_Hidden,
        [this](std::size_t stage) -> std::optional<Table>
        {
            if (!HasPlaceForHidden(stage))
                return {};
            return m_folded[stage].ByPath(m_stages[stage].facts, kTable_Hidden);
        },
        OfCounts, 0.0);
}

void Certificate::AddNotes()
{
    double const diagonal = m_diagonal;
    AddTableOf(
        kTable_Views,
        [diagonal](Entry const& a, Entry const& b)
        {
            double most = a.count == b.count ? 0.0 : 1.0;
            for (std::size_t i = 0; i < std::min(a.numbers.size(), b.numbers.size()); ++i)
                most =
                    std::max(most, std::abs(a.numbers[i] - b.numbers[i]) / (i < 3 && diagonal > 0.0 ? diagonal : 1.0));
            return most;
        },
        kAngleTolerance);
    AddTableOf(
        kTable_Cuts,
        [diagonal](Entry const& a, Entry const& b)
        {
            double most = a.count == b.count ? 0.0 : 1.0;
            for (std::size_t i = 0; i < std::min(a.numbers.size(), b.numbers.size()); ++i)
                most =
                    std::max(most, std::abs(a.numbers[i] - b.numbers[i]) / (i == 0 && diagonal > 0.0 ? diagonal : 1.0));
            return most;
        },
        kAngleTolerance);
    AddTableOf(kTable_ViewMembers, OfPresence, 0.0);
    AddTableOf(kTable_Notes, OfCounts, 0.0);
    AddTableOf(kTable_NoteValues, OfCounts, 0.0);
    AddTableOf(kTable_NoteTexts, OfPresence, 0.0, true);
    AddTableOf(kTable_Properties, OfPresence, 0.0, true);
}

void Certificate::AddColors()
{
    for (char const* const name : {kTable_Colors, kTable_LineColors, kTable_DrawnColors})
        AddTable(
            name,
            [this, name](std::size_t stage)
            { return Has(stage, name) ? std::optional(ByPathAndName(stage, name)) : std::nullopt; },
            OfNumbers, kFineTolerance);
}

void Certificate::AddFaces()
{
    double const diagonal = m_diagonal;
    AddTableOf(
        kTable_FaceIds,
        [diagonal](Entry const& a, Entry const& b)
        {
            double const area = std::max(a.numbers[0], b.numbers[0]);
            if (area <= 1e-9 * diagonal * diagonal)
                return 0.0;
            double most = Relative(a.numbers[0], b.numbers[0]);
            for (std::size_t i = 1; i < 4; ++i)
                most = std::max(most, std::abs(a.numbers[i] - b.numbers[i]) / (area * diagonal));
            return most;
        },
        kFineTolerance);
}

void Certificate::AddBulk(bool isOfMeshes)
{
    auto const has = [this, isOfMeshes](std::size_t stage)
    { return isOfMeshes ? m_stages[stage].facts.hasMesh : m_stages[stage].facts.hasBodies; };
    Bulk Node::*const member = isOfMeshes ? &Node::mesh : &Node::bodies;
    auto const total = [this, has, member](std::size_t stage) -> std::optional<Bulk>
    {
        if (!has(stage))
            return {};
        Bulk all;
        for (auto const& known : m_folded[stage].nodes)
            all.Add(known.second.*member);
        return all;
    };
    auto const named = [isOfMeshes](char const* name) { return isOfMeshes ? std::string("mesh ") + name : name; };
    auto const number = [&](char const* name, double Bulk::*value)
    {
        AddTotal(
            named(name).c_str(),
            [&](std::size_t stage)
            {
                auto const all = total(stage);
                return all ? std::optional(std::vector<double>{(*all).*value}) : std::nullopt;
            },
            false);
    };
    number("volume", &Bulk::volume);
    number("absolute volume", &Bulk::absoluteVolume);
    number("area", &Bulk::area);
    if (!isOfMeshes)
        number("line length", &Bulk::length);
    AddTotal(
        named("centroid").c_str(),
        [&](std::size_t stage)
        {
            auto const all = total(stage);
            return all ? std::optional(List(all->Centre())) : std::nullopt;
        },
        true);
    AddTotal(
        named("box").c_str(),
        [&](std::size_t stage)
        {
            auto const all = total(stage);
            return all && all->HasBox() ? std::optional(BoxOf(*all)) : std::nullopt;
        },
        true);
    double const diagonal = m_diagonal;
    AddTable(
        named("by path").c_str(),
        [&](std::size_t stage) -> std::optional<Table>
        {
            if (!has(stage) || !m_folded[stage].hasStructure)
                return {};
            return ByPath(stage,
                          [member](Node const& node)
                          {
                              Bulk const& bulk = node.*member;
                              std::vector<double> numbers{bulk.absoluteVolume, bulk.area, bulk.length};
                              for (std::vector<double> const& more : {List(bulk.Centre()), BoxOf(bulk)})
                                  numbers.insert(numbers.end(), more.begin(), more.end());
                              return numbers;
                          });
        },
        [diagonal](Entry const& a, Entry const& b)
        {
            double most = 0.0;
            // Of what is next to nothing, the last digits are anything.
            double const least[] = {1e-9 * diagonal * diagonal * diagonal, 1e-9 * diagonal * diagonal, 1e-9 * diagonal};
            for (std::size_t i = 0; i < 3; ++i)
                if (std::max(std::abs(a.numbers[i]), std::abs(b.numbers[i])) > least[i])
                    most = std::max(most, Relative(a.numbers[i], b.numbers[i]));
            for (std::size_t i = 3; i < a.numbers.size(); ++i)
                most = std::max(most, diagonal > 0.0 ? std::abs(a.numbers[i] - b.numbers[i]) / diagonal : 0.0);
            return most;
        },
        kFineTolerance);
}

void Certificate::AddShapes()
{
    auto const count = [this](char const* name, unsigned long long Node::*member, bool ModelFacts::*has)
    {
        AddTotal(
            name,
            [&](std::size_t stage) -> std::optional<std::vector<double>>
            {
                if (!(m_stages[stage].facts.*has))
                    return {};
                double sum = 0.0;
                for (auto const& known : m_folded[stage].nodes)
                    sum += static_cast<double>(known.second.*member);
                return std::vector<double>{sum};
            },
            false);
    };
    count("solids", &Node::solids, &ModelFacts::hasBodies);
    count("faces", &Node::faces, &ModelFacts::hasBodies);
    AddBulk(false);
    count("triangles", &Node::triangles, &ModelFacts::hasMesh);
}

void Certificate::AddMeshes()
{
    AddBulk(true);
    AddTable(
        kTable_Normals,
        [this](std::size_t stage) -> std::optional<Table>
        {
            if (!Has(stage, kTable_Normals))
                return {};
            Table table = m_folded[stage].ByPath(m_stages[stage].facts, kTable_Normals);
            // The mean angle in degrees, over the area. What has no normals is given some.
            for (auto& [path, entry] : table)
            {
                auto const node = m_folded[stage].nodes.find(path);
                double const area = node == m_folded[stage].nodes.end() ? 0.0 : node->second.mesh.area;
                entry = {1.0, {area > 0.0 && !entry.numbers.empty() ? entry.numbers[0] / area : 0.0}};
            }
            return table;
        },
        [](Entry const& a, Entry const& b) { return std::abs(a.numbers.at(0) - b.numbers.at(0)) / 180.0; },
        kAngleTolerance, true);
    if (m_stages.front().facts.hasBodies && !m_stages.front().facts.hasMesh)
        AddBodiesInMeshes();
}

void Certificate::AddBodiesInMeshes()
{
    auto const measured = [this](std::size_t stage, double Bulk::*member) -> std::optional<std::vector<double>>
    {
        // What is hidden has no triangles.
        auto const hidden = m_stages.front().facts.tables.find(kTable_Hidden);
        if (hidden == m_stages.front().facts.tables.end() || !hidden->second.empty() ||
            (stage > 0 && !m_stages[stage].facts.hasMesh))
            return {};
        double sum = 0.0;
        for (auto const& known : m_folded[stage].nodes)
            sum += (stage == 0 ? known.second.bodies : known.second.mesh).*member;
        return std::vector<double>{sum};
    };
    AddTotal(
        "area of all bodies in meshes", [&](std::size_t stage) { return measured(stage, &Bulk::area); }, false,
        kMeshTolerance);
    AddTable(
        "area of bodies in meshes",
        [this](std::size_t stage) -> std::optional<Table>
        {
            if ((stage > 0 && !m_stages[stage].facts.hasMesh) || !m_folded[stage].hasStructure)
                return {};
            Table const hidden = m_folded.front().ByPath(m_stages.front().facts, kTable_Hidden);
            Table table;
            for (auto const& [path, node] : m_folded[stage].nodes)
                if (double const area = stage == 0 ? node.bodies.area : node.mesh.area;
                    area > 0.0 && hidden.count(path) == 0)
                    table[path] = {1.0, {area}};
            return table;
        },
        OfNumbers, kMeshTolerance);
    AddTable(
        "colours of bodies in meshes",
        [this](std::size_t stage) -> std::optional<Table>
        {
            char const* const name = stage == 0 ? kTable_Colors : kTable_DrawnColors;
            if (!Has(stage, name) || !HasPlaceForHidden(0))
                return {};
            // Which faces are hidden a table of colours does not tell.
            Table const hidden = m_folded.front().ByPath(m_stages.front().facts, kTable_Hidden);
            Table table = ByPathAndName(stage, name);
            std::erase_if(table,
                          [&](auto const& entry) { return hidden.count(ModelFacts::Parted(entry.first).first); });
            // How much of an area is lost in the triangles is told from all of its path.
            std::map<std::string, double> areas;
            for (auto const& [key, entry] : table)
                areas[ModelFacts::Parted(key).first] += entry.numbers[0];
            for (auto& [key, entry] : table)
                entry.numbers.push_back(areas[ModelFacts::Parted(key).first]);
            return table;
        },
        [](Entry const& a, Entry const& b)
        {
            double const all = std::max(a.numbers[1], b.numbers[1]);
            return all > 0.0 ? std::abs(a.numbers[0] - b.numbers[0]) / all : 0.0;
        },
        kMeshTolerance);
}

void Certificate::AddAbsences()
{
    for (std::size_t stage = 1; stage < m_stages.size(); ++stage)
    {
        std::string all;
        for (auto const& [name, table] : m_stages.front().facts.tables)
        {
            double count = 0.0;
            for (auto const& known : table)
                count += known.second.count;
            // Ids hold in one model, and triangles have the colours of their faces.
            if (name == kTable_FaceIds || (name == kTable_Colors && m_stages[stage].facts.hasMesh))
                continue;
            if (count > 0.0 && !Has(stage, name.c_str()))
                all += fmt::format("{}{:.9g} {}", all.empty() ? "" : ", ", count, name);
        }
        if (m_stages.front().facts.hasBodies && !m_stages[stage].facts.hasBodies)
            all += all.empty() ? "bodies" : ", bodies";
        if (!all.empty())
            m_absences.push_back("not in " + m_stages[stage].name + ": " + all);
    }
}

}  // namespace KVR::Certification
