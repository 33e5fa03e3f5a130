#pragma once

#include <exception>
#include <functional>
#include <set>
#include <string>
#include <unordered_set>
#include <utility>

#include "scene/Scene.h"

namespace KVR
{

/// Which geometry is being worked on, for whoever outlives this process, and which is left out, since work on it has
/// ended a process before.
class GeometryWatch
{
public:
    /// Told the id of geometry that work begins on, and an empty one at its end.
    using Tell = std::function<void(std::string const& id)>;

    GeometryWatch() = default;
    GeometryWatch(Tell tell, std::set<std::string> leftOut) : m_tell(std::move(tell)), m_leftOut(std::move(leftOut)) {}

    /// The time for which something is worked on. An exception does not end it.
    class Work
    {
    public:
        explicit Work(Tell const* tell) : m_tell(tell) {}
        ~Work()
        {
            if (m_tell && std::uncaught_exceptions() == m_exceptions)
                (*m_tell)({});
        }
        Work(Work const&) = delete;
        Work& operator=(Work const&) = delete;

    private:
        Tell const* m_tell;
        int m_exceptions = std::uncaught_exceptions();
    };

    bool LeavesOut(SceneGeometry const& geometry) const
    {
        return !m_leftOut.empty() && m_leftOut.count(std::string(geometry.id)) > 0;
    }
    /// What was worked on before is known to be harmless, and not told again.
    Work Begin(SceneGeometry const& geometry)
    {
        bool const isTold = m_tell && m_known.insert(geometry.object).second;
        if (isTold)
            m_tell(std::string(geometry.id));
        return Work(isTold ? &m_tell : nullptr);
    }

private:
    Tell m_tell;
    std::set<std::string> m_leftOut;
    std::unordered_set<IObject const*> m_known;
};

}  // namespace KVR
