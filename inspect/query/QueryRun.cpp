#include "inspect/query/QueryRun.h"

#include <algorithm>
#include <charconv>
#include <cmath>

#include "scene/SceneFilter.h"
#include "scene/SceneTotals.h"

namespace KVR
{

namespace
{

using Condition = QueryTree::Condition;
using Relation = QueryTree::Relation;

// The relation of which the given one is the opposite; itself for one that is none.
Relation Straight(Relation relation)
{
    return relation == Relation::kUnequal  ? Relation::kEqual
           : relation == Relation::kUnlike ? Relation::kLike
                                           : relation;
}

bool AreEqual(double a, double b)
{
    constexpr double kRounding = 1e-9;
    return std::abs(a - b) <= kRounding * std::max(std::abs(a), std::abs(b));
}

bool Compare(double number, Relation relation, double with)
{
    switch (relation)
    {
        case Relation::kEqual:
            return AreEqual(number, with);
        case Relation::kLess:
            return number < with;
        case Relation::kLessOrEqual:
            return number <= with;
        case Relation::kGreater:
            return number > with;
        case Relation::kGreaterOrEqual:
            return number >= with;
        default:
            return false;
    }
}

bool Compare(std::string_view text, Relation relation, std::string_view with)
{
    return relation == Relation::kLike ? SceneFilter::Fits(text, with) : text == with;
}

// A property's number, or that of a text which is nothing else.
std::optional<double> NumberIn(SceneProperty const& property)
{
    auto const* const text = std::get_if<std::string>(&property.value);
    if (!text)
        return NumberOf(property);
    double number = 0.0;
    auto const result = std::from_chars(text->data(), text->data() + text->size(), number);
    bool const isWhole = result.ec == std::errc() && result.ptr == text->data() + text->size();
    return isWhole && std::isfinite(number) ? std::optional(number) : std::nullopt;
}

}  // namespace

QueryRun::QueryRun(Query const& query, Scene const& scene) : m_tree(query.Tree()), m_values(scene)
{
    unsigned long long const count = SceneTotals::CountOccurrences(scene);
    if (count > Query::kMostOccurrences)
        throw QueryError("the scene has " + std::to_string(count) + " occurrences, of which no more than " +
                             std::to_string(Query::kMostOccurrences) + " can be asked",
                         0);
}

bool QueryRun::Next()
{
    while (m_values.Next())
    {
        std::size_t const depth = m_values.Walk().Depth();
        m_levels.resize(depth);
        Level const above = m_levels.empty() ? Level() : m_levels.back();
        Level level;
        bool isAsked = false;
        for (std::size_t i = 0; i < m_tree.steps.size(); ++i)
        {
            QueryTree::Step const& step = m_tree.steps[i];
            std::uint64_t const before = step.isChild ? above.here : above.hereOrAbove;
            if ((!step.isFirst && ((before >> (i - 1)) & 1U) == 0) || !Fits(step))
                continue;
            level.here |= std::uint64_t{1} << i;
            isAsked = isAsked || step.isLast;
        }
        level.hereOrAbove = level.here | above.hereOrAbove;
        m_levels.push_back(level);
        if (isAsked)
            return true;
    }
    return false;
}

bool QueryRun::Fits(QueryTree::Step const& step)
{
    using Kind = SceneComponent::Kind;
    Kind const kind = m_values.Walk().Component().kind;
    switch (step.kind)
    {
        case QueryTree::StepKind::kAny:
            break;
        case QueryTree::StepKind::kFile:
            if (kind != Kind::kFile)
                return false;
            break;
        case QueryTree::StepKind::kAssembly:
            if (kind != Kind::kAssembly)
                return false;
            break;
        case QueryTree::StepKind::kPart:
            if (kind != Kind::kPart)
                return false;
            break;
        case QueryTree::StepKind::kInstance:
            if (!m_values.Flag(QueryField::kInstance))
                return false;
            break;
    }
    return std::all_of(step.conditions.begin(), step.conditions.end(),
                       [&](Condition const& condition) { return Holds(condition); });
}

bool QueryRun::Holds(Condition const& condition)
{
    auto const holds = [&](Condition const& part) { return Holds(part); };
    switch (condition.kind)
    {
        case Condition::Kind::kAnd:
            return std::all_of(condition.parts.begin(), condition.parts.end(), holds);
        case Condition::Kind::kOr:
            return std::any_of(condition.parts.begin(), condition.parts.end(), holds);
        case Condition::Kind::kNot:
            return !Holds(condition.parts.front());
        case Condition::Kind::kTest:
            break;
    }
    bool const isOpposite = Straight(condition.relation) != condition.relation;
    return HoldsTest(condition) != isOpposite;
}

bool QueryRun::HoldsTest(Condition const& test)
{
    Relation const relation = Straight(test.relation);
    QueryFieldRow const& row = RowOf(test.column.field);
    switch (row.type)
    {
        case QueryFieldType::kFlag:
            return m_values.Flag(row.field);
        case QueryFieldType::kText:
        {
            auto const& texts = m_values.Texts(row.field);
            return std::any_of(texts.begin(), texts.end(),
                               [&](std::string_view text) { return Compare(text, relation, test.text); });
        }
        case QueryFieldType::kProperty:
        {
            std::vector<SceneProperty> const& properties = m_values.Properties();
            return std::any_of(properties.begin(), properties.end(),
                               [&](SceneProperty const& property)
                               { return property.name == test.column.property && HoldsTest(test, property); });
        }
        default:
        {
            std::optional<double> const number = m_values.Number(row.field);
            return number && Compare(*number, relation, test.number.value_or(0.0));
        }
    }
}

bool QueryRun::HoldsTest(Condition const& test, SceneProperty const& property) const
{
    Relation const relation = Straight(test.relation);
    if (relation == Relation::kIs)
        return true;
    std::optional<double> const number = test.number && relation != Relation::kLike ? NumberIn(property) : std::nullopt;
    if (number)
        return Compare(*number, relation, *test.number);
    bool const isOfText = relation == Relation::kEqual || relation == Relation::kLike;
    return isOfText && Compare(TextOf(property), relation, test.text);
}

}  // namespace KVR
