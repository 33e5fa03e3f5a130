#include "host/QueryArguments.h"

#include <CLI/CLI.hpp>

#include "inspect/query/Query.h"
#include "inspect/query/QueryParser.h"

namespace KVR
{

namespace
{

template <class Parse>
void Expect(CLI::Option& option, Parse const& parse)
{
    option.each(
        [parse](std::string const& text)
        {
            try
            {
                parse(text);
            }
            catch (QueryError const& error)
            {
                throw ExpressionError(error.what(), CaretLines(text, error.Column()));
            }
        });
}

}  // namespace

void ExpectExpression(CLI::Option& option)
{
    Expect(option, [](std::string const& text) { ParseQuery(text); });
}

void ExpectNameOrExpression(CLI::Option& option)
{
    Expect(option,
           [](std::string const& text)
           {
               if (Query::IsExpression(text))
                   ParseQuery(text);
           });
}

void ExpectColumns(CLI::Option& option)
{
    Expect(option, [](std::string const& text) { ParseQueryColumns(text); });
}

}  // namespace KVR
