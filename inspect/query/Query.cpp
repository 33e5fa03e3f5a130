#include "inspect/query/Query.h"

#include <algorithm>

#include "inspect/query/QueryParser.h"
#include "inspect/query/QueryRun.h"
#include "inspect/query/QueryTree.h"

namespace KVR
{

namespace
{

QuerySource SourceOf(QueryTree::Condition const& condition)
{
    if (condition.kind == QueryTree::Condition::Kind::kTest)
        return RowOf(condition.column.field).source;
    QuerySource source = QuerySource::kDocument;
    for (QueryTree::Condition const& part : condition.parts)
        source = std::max(source, SourceOf(part));
    return source;
}

}  // namespace

Query::Query(std::string_view text) : m_tree(std::make_shared<QueryTree const>(ParseQuery(text))) {}

bool Query::IsExpression(std::string_view text)
{
    return BeginsAsQuery(text);
}

QuerySource Query::Source() const
{
    QuerySource source = QuerySource::kDocument;
    for (QueryTree::Step const& step : m_tree->steps)
        for (QueryTree::Condition const& condition : step.conditions)
            source = std::max(source, SourceOf(condition));
    return source;
}

std::vector<std::size_t> Query::Find(Scene const& scene) const
{
    std::vector<std::size_t> places;
    for (QueryRun run(*this, scene); run.Next();)
        places.push_back(run.Values().Place());
    return places;
}

std::string CaretLines(std::string_view text, std::size_t column)
{
    constexpr std::size_t kAround = 60;
    if (column == 0)
        return {};
    std::string line = "  ";
    std::string caret = "  ";
    std::size_t at = 0;
    for (char const c : text)
    {
        // Bytes inside a character stand in its column.
        if ((c & 0xC0) != 0x80)
            ++at;
        if (at + kAround < column || at > column + kAround)
            continue;
        bool const isControl = static_cast<unsigned char>(c) < 0x20 || c == 0x7F;
        line += isControl ? ' ' : c;
        if ((c & 0xC0) != 0x80 && at < column)
            caret += ' ';
    }
    return line + "\n" + caret + "^";
}

}  // namespace KVR
