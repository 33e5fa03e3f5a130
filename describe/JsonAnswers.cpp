#include "describe/JsonAnswers.h"

namespace KVR
{

bool JsonAnswers::BeginMember(Row const& row)
{
    if ((m_extent != Extent::kAll && row.isLong) || (m_extent == Extent::kSummary && row.isMass))
        return false;
    m_json.Key(row.name);
    return true;
}

void JsonAnswers::BeginObject(Interface const& interface)
{
    m_json.BeginObject(interface.form == Interface::Form::Short ? JsonWriter::Layout::Row : JsonWriter::Layout::Lines);
    if (interface.form != Interface::Form::Named)
        return;
    m_json.Key("Class");
    m_json.String(interface.name);
}

void JsonAnswers::Numbers(double const* values, std::size_t count)
{
    m_json.Row({values, count});
}

void JsonAnswers::Indices(int const* values, std::size_t count)
{
    m_json.Row({values, count});
}

void JsonAnswers::Indices(unsigned int const* values, std::size_t count)
{
    m_json.Row({values, count});
}

}  // namespace KVR
