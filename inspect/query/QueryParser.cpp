#include "inspect/query/QueryParser.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <iterator>
#include <tao/pegtl/contrib/parse_tree.hpp>

#include "inspect/query/Query.h"
#include "inspect/query/QueryGrammar.h"
#include "scene/NearestNames.h"

namespace KVR
{

namespace
{

namespace parse_tree = Grammar::pegtl::parse_tree;
using Node = parse_tree::node;
using Kind = QueryTree::Condition::Kind;
using Relation = QueryTree::Relation;
using StepKind = QueryTree::StepKind;

template <class Rule>
using Kept = parse_tree::selector<
    Rule,
    parse_tree::store_content::on<Grammar::Not, Grammar::PropertyName, Grammar::Word, Grammar::Relation, Grammar::Value,
                                  Grammar::Test, Grammar::Kind, Grammar::Step, Grammar::Path, Grammar::Child,
                                  Grammar::Descendant>,
    parse_tree::fold_one::on<Grammar::Factor, Grammar::Conjunction, Grammar::Condition>>;

struct NamedKind
{
    std::string_view name;
    StepKind kind;
};

constexpr NamedKind kKinds[] = {
    {"*", StepKind::kAny},     {"file", StepKind::kFile},         {"assembly", StepKind::kAssembly},
    {"part", StepKind::kPart}, {"instance", StepKind::kInstance},
};

struct NamedRelation
{
    std::string_view sign;
    Relation relation;
};

constexpr NamedRelation kRelations[] = {
    {"=", Relation::kEqual},   {"!=", Relation::kUnequal},
    {"~", Relation::kLike},    {"!~", Relation::kUnlike},
    {"<", Relation::kLess},    {"<=", Relation::kLessOrEqual},
    {">", Relation::kGreater}, {">=", Relation::kGreaterOrEqual},
};

bool IsOrder(Relation relation)
{
    return relation >= Relation::kLess && relation <= Relation::kGreaterOrEqual;
}

bool IsPattern(Relation relation)
{
    return relation == Relation::kLike || relation == Relation::kUnlike;
}

bool IsQuoted(std::string_view value)
{
    return value.front() == '"' || value.front() == '\'';
}

// A value without its quotation marks and backslashes.
std::string Plain(std::string_view value)
{
    if (!IsQuoted(value))
        return std::string(value);
    std::string text;
    for (std::size_t i = 1; i + 1 < value.size(); ++i)
    {
        if (value[i] == '\\')
            ++i;
        text.push_back(value[i]);
    }
    return text;
}

// A number with what stands behind it; nothing when it begins with none.
std::optional<std::pair<double, std::string_view>> NumberAndUnit(std::string_view value)
{
    double number = 0.0;
    char const* const end = value.data() + value.size();
    auto const result = std::from_chars(value.data(), end, number);
    if (result.ec != std::errc() || !std::isfinite(number))
        return std::nullopt;
    return std::pair(number, std::string_view(result.ptr, static_cast<std::size_t>(end - result.ptr)));
}

// Makes the tree of what was parsed. It goes no deeper than the expression, whose nesting is limited.
class TreeMaker
{
public:
    // `whole` is what the text is called in messages.
    TreeMaker(std::string_view text, char const* whole) : m_text(text), m_whole(whole) {}

    QueryTree Make(Node const& root)
    {
        for (auto const& path : root.children)
            if (path->is_type<Grammar::Path>())
                AddPath(*path);
        return std::move(m_tree);
    }

    [[noreturn]] void Fail(std::string const& what, std::size_t byte) const
    {
        std::string_view const before = m_text.substr(0, byte);
        auto const column = 1 + static_cast<std::size_t>(std::count_if(before.begin(), before.end(),
                                                                       [](char c) { return (c & 0xC0) != 0x80; }));
        throw QueryError("column " + std::to_string(column) + " of the " + m_whole + ": " + what, column);
    }

    QueryColumn ColumnOf(Node const& node) const
    {
        if (node.is_type<Grammar::PropertyName>())
            return {QueryField::kProperty, Plain(node.string_view())};
        return {FieldOf(node)};
    }

private:
    [[noreturn]] void Fail(std::string const& what, Node const& node) const { Fail(what, node.begin().byte); }

    void AddPath(Node const& path)
    {
        bool isChild = true;
        bool isFirst = true;
        for (auto const& node : path.children)
            if (!node->is_type<Grammar::Step>())
                isChild = node->is_type<Grammar::Child>();
            else
            {
                QueryTree::Step step = StepOf(*node);
                step.isFirst = std::exchange(isFirst, false);
                step.isLast = node == path.children.back();
                step.isChild = isChild;
                if (m_tree.steps.size() == Query::kMostSteps)
                    Fail("there are more than " + std::to_string(Query::kMostSteps) + " steps", *node);
                m_tree.steps.push_back(std::move(step));
            }
    }

    QueryTree::Step StepOf(Node const& node) const
    {
        QueryTree::Step step;
        for (auto const& child : node.children)
            if (child->is_type<Grammar::Kind>())
                step.kind = KindOf(*child);
            else
                step.conditions.push_back(ConditionOf(*child));
        return step;
    }

    StepKind KindOf(Node const& node) const
    {
        std::string_view const name = node.string_view();
        for (NamedKind const& row : kKinds)
            if (row.name == name)
                return row.kind;
        std::string const other = QueryFieldOf(name) ? "; a condition stands in brackets" : "";
        Fail("there is no kind \"" + std::string(name) + "\", but part, assembly, file, instance and *" + other, node);
    }

    QueryTree::Condition ConditionOf(Node const& node) const
    {
        if (node.is_type<Grammar::Test>())
            return TestOf(node);
        QueryTree::Condition condition;
        if (node.is_type<Grammar::Factor>())
        {
            condition = ConditionOf(*node.children.back());
            if (node.children.size() % 2 == 1)
                return condition;
            QueryTree::Condition opposite;
            opposite.kind = Kind::kNot;
            opposite.parts.push_back(std::move(condition));
            return opposite;
        }
        condition.kind = node.is_type<Grammar::Conjunction>() ? Kind::kAnd : Kind::kOr;
        for (auto const& part : node.children)
            condition.parts.push_back(ConditionOf(*part));
        return condition;
    }

    QueryTree::Condition TestOf(Node const& node) const
    {
        Node const& subject = *node.children.front();
        QueryTree::Condition test;
        test.column = ColumnOf(subject);
        QueryFieldRow const& row = RowOf(test.column.field);
        bool const canBeAlone = row.type == QueryFieldType::kFlag || row.type == QueryFieldType::kProperty;
        if (node.children.size() == 1)
        {
            if (!canBeAlone)
                Fail(std::string(row.name) + " is to be compared with something", subject);
            return test;
        }
        Node const& sign = *node.children[1];
        if (row.type == QueryFieldType::kFlag)
            Fail(std::string(row.name) + " is true or not, and is compared with nothing", sign);
        test.relation = std::find_if(std::begin(kRelations), std::end(kRelations),
                                     [&](NamedRelation const& known) { return known.sign == sign.string_view(); })
                            ->relation;
        TakeValue(test, row, sign, *node.children[2]);
        return test;
    }

    QueryField FieldOf(Node const& node) const
    {
        std::string const name = node.string();
        if (QueryFieldRow const* const row = QueryFieldOf(name); row && row->type != QueryFieldType::kProperty)
            return row->field;
        NearestNames nearest(name, QueryFields().size(), 2);
        for (QueryFieldRow const& row : QueryFields())
            nearest.Add(row.name);
        std::vector<std::string> names = nearest.Names();
        // Many have others in them.
        std::stable_sort(names.begin(), names.end(),
                         [](std::string const& a, std::string const& b) { return a.size() < b.size(); });
        Fail("there is no \"" + name + "\" to ask for" + (names.empty() ? "" : "; did you mean " + names.front() + "?"),
             node);
    }

    void TakeValue(QueryTree::Condition& test, QueryFieldRow const& row, Node const& sign, Node const& value) const
    {
        test.text = Plain(value.string_view());
        auto const number = IsQuoted(value.string_view()) ? std::nullopt : NumberAndUnit(test.text);
        if (row.type == QueryFieldType::kText)
        {
            if (IsOrder(test.relation))
                Fail(std::string(row.name) + " is a text, which is compared by =, !=, ~ or !~", sign);
            if (row.field == QueryField::kColor)
                std::transform(test.text.begin(), test.text.end(), test.text.begin(),
                               [](char c) { return c >= 'A' && c <= 'F' ? static_cast<char>(c - 'A' + 'a') : c; });
            return;
        }
        if (row.type == QueryFieldType::kProperty)
        {
            if (number && number->second.empty())
                test.number = number->first;
            if (IsOrder(test.relation) && !test.number)
                Fail("a property is compared by " + sign.string() + " with a number without a unit alone", value);
            return;
        }
        if (IsPattern(test.relation))
            Fail(std::string(row.name) + " is a number, which is compared by =, !=, <, <=, > or >=", sign);
        if (!number)
            Fail("a number is expected", value);
        test.number = number->first * FactorOf(row, number->second, value);
    }

    double FactorOf(QueryFieldRow const& row, std::string_view unit, Node const& value) const
    {
        std::string const units = UnitNamesOf(row.type);
        std::optional<double> const factor = units.empty() && unit.empty() ? 1.0 : UnitFactorOf(row.type, unit);
        if (!factor)
            Fail(units.empty() ? std::string(row.name) + " is a number without a unit"
                               : "the number needs a unit: " + units,
                 value);
        return *factor;
    }

    std::string_view m_text;
    char const* m_whole;
    QueryTree m_tree;
};

// The byte at which parentheses and brackets stand too deeply in one another; nothing when they do not.
std::optional<std::size_t> TooDeepAt(std::string_view text)
{
    std::size_t depth = 0;
    char mark = 0;
    for (std::size_t i = 0; i < text.size(); ++i)
    {
        char const c = text[i];
        if (mark != 0)
        {
            if (c == '\\')
                ++i;
            else if (c == mark)
                mark = 0;
        }
        else if (c == '"' || c == '\'')
            mark = c;
        else if ((c == '(' || c == '[') && ++depth > Query::kMostNesting)
            return i;
        else if ((c == ')' || c == ']') && depth > 0)
            --depth;
    }
    return std::nullopt;
}

template <class Rule>
std::unique_ptr<Node> Parsed(std::string_view text, TreeMaker const& maker)
{
    Grammar::pegtl::memory_input in(text.data(), text.size(), "");
    try
    {
        return parse_tree::parse<Rule, Kept, Grammar::pegtl::nothing, Grammar::Control>(in);
    }
    catch (Grammar::pegtl::parse_error const& error)
    {
        maker.Fail(std::string(error.message()), error.positions().front().byte);
    }
}

// How a text began.
struct Begun
{
    std::vector<std::string> words;
    bool hasBrackets = false;
    bool hasRelation = false;
};

template <class Rule>
struct NoteBeginning : Grammar::pegtl::nothing<Rule>
{
};
template <>
struct NoteBeginning<Grammar::Word>
{
    template <class Input>
    static void apply(Input const& in, Begun& begun)
    {
        begun.words.push_back(in.string());
    }
};
template <>
struct NoteBeginning<Grammar::BracketsBeginning>
{
    static void apply0(Begun& begun) { begun.hasBrackets = true; }
};
template <>
struct NoteBeginning<Grammar::BeginningRelation>
{
    static void apply0(Begun& begun) { begun.hasRelation = true; }
};

}  // namespace

QueryTree ParseQuery(std::string_view text)
{
    TreeMaker maker(text, "expression");
    if (text.size() > Query::kMostBytes)
        throw QueryError("the expression is longer than " + std::to_string(Query::kMostBytes) + " bytes", 0);
    if (std::optional<std::size_t> const place = TooDeepAt(text))
        maker.Fail("more than " + std::to_string(Query::kMostNesting) + " parentheses and brackets in one another",
                   *place);
    return maker.Make(*Parsed<Grammar::Expression>(text, maker));
}

std::vector<QueryColumn> ParseQueryColumns(std::string_view text)
{
    TreeMaker const maker(text, "list of columns");
    std::vector<QueryColumn> columns;
    auto const root = Parsed<Grammar::Columns>(text, maker);
    for (auto const& node : root->children)
        columns.push_back(maker.ColumnOf(*node));
    return columns;
}

bool BeginsAsQuery(std::string_view text)
{
    if (text.size() > Query::kMostBytes)
        return false;
    Grammar::pegtl::memory_input in(text.data(), text.size(), "");
    Begun begun;
    if (!Grammar::pegtl::parse<Grammar::Beginning, NoteBeginning>(in, begun))
        return false;
    // The kind may be "*", or missing before brackets, whose word is the last one.
    bool const hasKind = begun.words.size() > (begun.hasBrackets ? 1U : 0U);
    auto const isKind = [](std::string_view word) {
        return std::any_of(std::begin(kKinds), std::end(kKinds),
                           [&](NamedKind const& row) { return row.name == word; });
    };
    return (!hasKind || isKind(begun.words.front())) &&
           (!begun.hasBrackets || begun.hasRelation || QueryFieldOf(begun.words.back()));
}

}  // namespace KVR
