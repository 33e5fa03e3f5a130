#include "framework/api/OccurrencePathCollection.h"

#include "framework/api/Subscript.h"

namespace KVR
{

OccurrencePathCollection::OccurrencePathCollection() = default;
OccurrencePathCollection::~OccurrencePathCollection() = default;

void OccurrencePathCollection::AddPath(IdSet const& path)
{
    m_paths.push_back(path);
}
IdSet const& OccurrencePathCollection::At(unsigned long long index) const
{
    return CheckedAt(m_paths, index);
}

}  // namespace KVR
