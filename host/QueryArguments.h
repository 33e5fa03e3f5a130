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

/// Has the text of an option looked at as it is parsed: ExpressionError for one that is no expression.
void ExpectExpression(CLI::Option& option);
/// The same where a name may stand, too.
void ExpectNameOrExpression(CLI::Option& option);
/// The same for a list of columns.
void ExpectColumns(CLI::Option& option);

}  // namespace KVR
