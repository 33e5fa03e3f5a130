#include "host/QueryArguments.h"

#include <CLI/CLI.hpp>

#include "inspect/query/Query.h"
#include "inspect/query/QueryParser.h"

namespace KVR
{

namespace
{

template <class Parse>
void Expect(std::string const& text, Parse const& parse)
{
    try
    {
        parse(text);
    }
    catch (QueryError const& error)
    {
        throw ExpressionError(error.what(), CaretLines(text, error.Column()));
    }
}

}  // namespace

void ExpectExpression(std::string const& text)
{
    Expect(text, &ParseQuery);
}

void ExpectColumns(std::string const& text)
{
    Expect(text, &ParseQueryColumns);
}

void ExpectNamesOrExpressions(CLI::Option& option)
{
    option.each(
        [](std::string const& text)
        {
            if (Query::IsExpression(text))
                ExpectExpression(text);
        });
}

}  // namespace KVR
