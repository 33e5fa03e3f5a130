#pragma once

#include <memory>
#include <vector>

#include "inspect/query/QueryField.h"

namespace KVR
{

class OccurrenceValues;
class Output;

/// In which form an answer is written.
enum class QueryForm
{
    kText,
    kCsv,
    kJson
};

/// Writes occurrences with the values of columns as they come, and keeps none. Finish ends it.
class QueryOutput
{
public:
    virtual ~QueryOutput() = default;
    virtual void Add(OccurrenceValues& values) = 0;
    virtual void Finish() = 0;

    /// Text has the values of a line with tabs between them, CSV a first line with the names of the columns.
    static std::unique_ptr<QueryOutput> Of(QueryForm form, std::vector<QueryColumn> columns, Output& out);
};

/// A column as it stands in a list of columns.
std::string NameOf(QueryColumn const& column);

/// Writes a field of a CSV line: between quotation marks where it needs them. What a terminal obeys, line ends
/// included, is written as an escape.
void PutCsv(Output& out, std::string_view text);

}  // namespace KVR
