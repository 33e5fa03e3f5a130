#include "authoring/elements/SceneIds.h"

#include "framework/api/Exception.h"

namespace KVR::Authoring
{

void SceneIds::Define(UTF8String const& id)
{
    if (id.IsEmpty())
        throw GeneralException("an object needs an id");
    Digest const digest(id);
    if (!m_ids.insert(digest).second)
        throw GeneralException(UTF8String("two objects have the id ") + id);
    m_wanted.erase(digest);
}

void SceneIds::Want(UTF8String const& id)
{
    Digest const digest(id);
    if (!m_ids.contains(digest))
        m_wanted.emplace(digest, id);
}

void SceneIds::CheckAllCame() const
{
    if (!m_wanted.empty())
        throw GeneralException(UTF8String("no object has the id ") + m_wanted.begin()->second);
}

}  // namespace KVR::Authoring
