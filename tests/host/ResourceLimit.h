#pragma once

#include <sys/resource.h>

#include <algorithm>

namespace KVR::Test
{

/// A limit of this process and of those that it starts, such as RLIMIT_FSIZE, so long as the object lives.
class ResourceLimit
{
public:
    ResourceLimit(__rlimit_resource_t resource, rlim_t limit) : m_resource(resource)
    {
        ::getrlimit(m_resource, &m_former);
        rlimit changed = m_former;
        changed.rlim_cur = std::min(limit, m_former.rlim_max);
        ::setrlimit(m_resource, &changed);
    }
    ~ResourceLimit() { ::setrlimit(m_resource, &m_former); }
    ResourceLimit(ResourceLimit const&) = delete;
    ResourceLimit& operator=(ResourceLimit const&) = delete;

private:
    __rlimit_resource_t m_resource;
    rlimit m_former{};
};

}  // namespace KVR::Test
