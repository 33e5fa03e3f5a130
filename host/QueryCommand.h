#pragma once

#include <string>

#include "host/SceneCommand.h"

namespace KVR
{

/// The command "query": the occurrences that an expression asks for, or what they are made of.
class QueryCommand final : public SceneCommand
{
public:
    explicit QueryCommand(CLI::App& program);

private:
    StoreNeeds Needs() const override;
    std::string Show(IProducer& producer, SceneReading const& reading, Output& out) override;

    /// The columns that are printed, those by default included.
    std::string Columns() const;

    /// Empty for all parts, of a bill of materials alone.
    std::string m_expression;
    std::string m_columnsText;
    bool m_countsOnly = false;
    bool m_asCsv = false;
    bool m_asJson = false;
    bool m_asBill = false;
};

}  // namespace KVR
