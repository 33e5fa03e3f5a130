#include "inspect/compare/MatchedAnswers.h"

#include <array>
#include <unordered_set>
#include <utility>

#include "describe/Tables.h"
#include "framework/api/IGeometry.h"

namespace KVR
{

namespace
{

void AddNames(Interface const& interface, std::unordered_set<std::string_view>& names)
{
    for (Row const& row : interface.rows)
    {
        if (row.base)
            AddNames(*row.base, names);
        else
            names.insert(row.name);
    }
}

// What is no shape of geometry.
bool IsCommon(std::string_view name)
{
    static std::unordered_set<std::string_view> const kNames = []
    {
        std::unordered_set<std::string_view> names;
        for (Interface const* const interface : {&TableOf<IGeometry>::kTable, &TableOf<ISubEntityStyles>::kTable,
                                                 &TableOf<ISubObjectPersistentIds>::kTable})
            AddNames(*interface, names);
        return names;
    }();
    return kNames.contains(name);
}

// Members that refer to no object in the eyes of a walk, and name some all the same.
bool NamesObjects(std::string_view name)
{
    constexpr std::array<std::string_view, 7> kNames{
        "BaseOccPaths", "CrossLevelVisibilities", "CrossLevelStyles", "CrossLevelTransforms",
        "ViewMembers",  "ExtensionData",          "CustomData"};
    for (std::string_view const known : kNames)
        if (name == known)
            return true;
    return false;
}

}  // namespace

MatchedAnswers::MatchedAnswers(AnswerVisitor* shape, AnswerVisitor* rest, NameOfId nameOfId)
    : m_shape(shape), m_rest(rest), m_nameOfId(std::move(nameOfId)), m_to(rest)
{
}

void MatchedAnswers::Begin(Interface const& interface)
{
    m_hasShape = IsA(interface, TableOf<IGeometry>::kTable);
    m_to = m_rest;
}

bool MatchedAnswers::BeginMember(Row const& row)
{
    if (m_depth == 0)
    {
        if (row.name == "Id" || row.name == "PropertyIds")
            return false;
        bool const isShape = m_hasShape && row.refers == Refers::Nothing && !IsCommon(row.name);
        m_to = isShape ? m_shape : m_rest;
        m_hasIds = row.refers != Refers::Nothing || NamesObjects(row.name);
    }
    if (!m_to || !m_to->BeginMember(row))
    {
        m_to = m_depth == 0 ? m_rest : m_to;
        return false;
    }
    ++m_depth;
    return true;
}

void MatchedAnswers::EndMember()
{
    m_to->EndMember();
    if (--m_depth == 0)
        m_to = m_rest;
}

void MatchedAnswers::Text(std::string_view text)
{
    if (m_hasIds && m_nameOfId)
        if (auto const name = m_nameOfId(text))
            return m_to->Text(*name);
    m_to->Text(text);
}

void MatchedAnswers::BeginObject(Interface const& interface)
{
    if (m_to)
        m_to->BeginObject(interface);
}

void MatchedAnswers::EndObject()
{
    if (m_to)
        m_to->EndObject();
}

}  // namespace KVR
