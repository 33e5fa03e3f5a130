#pragma once

#include <memory>

#include "framework/api/IGroup.h"
#include "framework/api/IdSet.h"
#include "framework/xml_util/ObjectState.h"

namespace KVR
{

/// A group as an element of a "GroupSet" declares it. ReadGroupSet makes it.
class XMLGroup : public ObjectState<IGroup>
{
public:
    XMLGroup(UTF16String const& label, UTF8String id, UTF16String description);
    ~XMLGroup() override;

    UTF16String Description() const override { return m_description; }
    IdSet const& GeometryItems() const override { return *m_geometryItems; }

    /// Adds a member unless it is one already.
    void AddItem(UTF8String const& id);
    /// Replaces the members.
    void SetItems(IdSet items);
    /// Takes the members of another group, without a copy of them: a thousand groups with a million members between
    /// them hold them once.
    void ShareItems(XMLGroup const& other) noexcept { m_geometryItems = other.m_geometryItems; }

private:
    UTF16String m_description;
    // Never changed while another group holds it, too.
    std::shared_ptr<IdSet> m_geometryItems;
};

}  // namespace KVR
