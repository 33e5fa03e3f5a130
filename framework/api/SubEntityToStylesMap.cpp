#include "framework/api/SubEntityToStylesMap.h"

#include "framework/api/Subscript.h"

namespace KVR
{

SubEntityToStylesMap::SubEntityToStylesMap() = default;
SubEntityToStylesMap::~SubEntityToStylesMap() = default;

void SubEntityToStylesMap::SetStyles(UTF8String const& dataId, IdSet const& styles)
{
    auto const [place, isNew] = m_places.try_emplace(dataId, m_entries.size());
    if (isNew)
        m_entries.emplace_back(dataId, styles);
    else
        m_entries[place->second].second = styles;
}

void SubEntityToStylesMap::Remove(UTF8String const& dataId)
{
    auto const found = m_places.find(dataId);
    if (found == m_places.end())
        return;
    std::size_t const gone = found->second;
    m_places.erase(found);
    m_entries.erase(m_entries.begin() + static_cast<std::ptrdiff_t>(gone));
    for (auto& [id, place] : m_places)
    {
        if (place > gone)
            --place;
    }
}

void SubEntityToStylesMap::Clear()
{
    m_entries.clear();
    m_places.clear();
}

UTF8String const& SubEntityToStylesMap::DataIdAt(unsigned long long index) const
{
    return CheckedAt(m_entries, index).first;
}

IdSet const& SubEntityToStylesMap::StylesAt(unsigned long long index) const
{
    return CheckedAt(m_entries, index).second;
}

IsValueSpecifiedEnum SubEntityToStylesMap::Styles(UTF8String const& dataId, IdSet& styles) const
{
    auto const found = m_places.find(dataId);
    if (found == m_places.end())
        return kIsValueSpecified_No;
    styles = m_entries[found->second].second;
    return kIsValueSpecified_Yes;
}

}  // namespace KVR
