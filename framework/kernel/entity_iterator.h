#pragma once

#include <cstddef>
#include <type_traits>

#include "framework/kernel/entity.h"

namespace KVR::GMK
{

/// A forward walk over the faces or edges of a body, each once. The end is made by default.
template <class Owner, class Sub>
class entity_iterator
{
    static_assert(std::is_same_v<Owner, BODY> && (std::is_same_v<Sub, FACE> || std::is_same_v<Sub, EDGE>));

public:
    entity_iterator() = default;
    /// The first one; the end for a null body or one without any.
    explicit entity_iterator(BODY const* body) : m_body(body) { EndAtLast(); }

    /// Goes to the next one, or to the end; not to be called at the end.
    entity_iterator& operator++()
    {
        ++m_at;
        EndAtLast();
        return *this;
    }
    /// Null at the end.
    operator Sub*() const { return m_body ? List()[m_at].get() : nullptr; }
    friend bool operator==(entity_iterator const& a, entity_iterator const& b) noexcept
    {
        return a.m_body == b.m_body && a.m_at == b.m_at;
    }

private:
    auto const& List() const
    {
        if constexpr (std::is_same_v<Sub, FACE>)
            return m_body->FaceList();
        else
            return m_body->EdgeList();
    }
    void EndAtLast()
    {
        if (m_body && m_at < List().size())
            return;
        m_body = nullptr;
        m_at = 0;
    }

    BODY const* m_body = nullptr;
    std::size_t m_at = 0;
};

}  // namespace KVR::GMK
