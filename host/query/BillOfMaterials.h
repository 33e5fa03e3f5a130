#pragma once

#include <cstddef>
#include <optional>
#include <string_view>
#include <vector>

#include "host/query/QueryOutput.h"

namespace KVR
{

class QueryRun;

/// What occurrences are made of: a row for each component, in the order in which they are first met. Texts are the
/// scene's.
class BillOfMaterials
{
public:
    /// Takes all that a run goes to.
    explicit BillOfMaterials(QueryRun& run);

    /// Masses are in kilograms. The text has a last line of totals.
    void Write(QueryForm form, Output& out) const;

private:
    struct Row
    {
        std::string_view name;
        std::string_view id;
        unsigned long long count = 0;
        /// Of one, and of all as they are placed; nothing where it is not known.
        std::optional<double> massOfOne = std::nullopt;
        std::optional<double> mass = std::nullopt;
    };

    void WriteText(Output& out) const;
    void WriteCsv(Output& out) const;
    void WriteJson(Output& out) const;

    std::vector<Row> m_rows;
    unsigned long long m_count = 0;
    /// Of those rows that have one.
    double m_mass = 0.0;
    unsigned long long m_rowsWithoutMass = 0;
};

}  // namespace KVR
