#include "python/SceneSource.h"

#include <pybind11/pybind11.h>

#include <exception>
#include <optional>

#include "exchange/source/SceneProblem.h"

namespace KVR::Python
{

namespace
{

std::recursive_mutex& Reading()
{
    static std::recursive_mutex mutex;
    return mutex;
}

}  // namespace

ReadingLock::ReadingLock() : m_lock(Reading(), std::try_to_lock)
{
    if (m_lock.owns_lock())
        return;
    std::optional<pybind11::gil_scoped_release> released;
    if (PyGILState_Check() == 1)
        released.emplace();
    m_lock.lock();
}

SceneSource::SceneSource(SceneOptions const& options)
{
    ReadingLock const lock;
    m_file = std::make_unique<SceneFile>(options);
    try
    {
        m_reading = SceneReading::Of(*m_file);
        if (m_reading.failure)
            throw SceneError(SceneProblem(options, *m_reading.failure));
    }
    catch (...)
    {
        m_file.reset();
        throw;
    }
}

SceneSource::~SceneSource()
{
    try
    {
        ReadingLock const lock;
        m_file.reset();
    }
    catch (std::exception const&)
    {
        // Without the lock the file ends all the same, with its owner.
    }
}

}  // namespace KVR::Python
