#pragma once

#include <string>

#include "host/Command.h"

namespace CLI
{
class Option;
}

namespace KVR
{

/// An expression that is none: bad arguments, with lines that show where it goes wrong.
class ExpressionError : public ArgumentError
{
public:
    ExpressionError(std::string const& sentence, std::string lines) : ArgumentError(sentence), m_lines(std::move(lines))
    {
    }

    std::string const& Lines() const noexcept { return m_lines; }

private:
    std::string m_lines;
};

/// ExpressionError for a text that is no expression.
void ExpectExpression(std::string const& text);
/// The same for a list of columns.
void ExpectColumns(std::string const& text);
/// Has the texts of an option, which may be names as well, looked at as they are parsed.
void ExpectNamesOrExpressions(CLI::Option& option);

}  // namespace KVR
